#include <gmock/gmock.h>

#include "library/dialogs/linux/DialogProcessTest.h"
#include "platform/Module.h"
#include "platform/RegistryStore.h"

namespace {

using platform::kDialogNotShown;
using platform::OpenDialog;
using testing::Contains;
using testing::IsEmpty;

// The built library is loaded, and its dialogs are shown by a program that plays a script.
class OpenDialogOnLinux : public DialogProcessTest {
protected:
    // Loaded once and for all: its neighbours hold descriptors of their own.
    static void SetUpTestSuite() { ASSERT_NE(platform::LoadModule(LIBRARY_FILE), nullptr); }

    void Configure(const char* path) const {
        const auto key = platform::CreateRegistryKey(
            platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
            "software\\Velmora\\platform");
        ASSERT_TRUE(platform::SetRegistryPath(key, "DialogProgram", path));
        platform::CloseRegistryKey(key);
    }
};

TEST_F(OpenDialogOnLinux, WithoutAProgramNoDialogCanBeShown) {
    for (int id = 101; id <= 104; ++id) {
        EXPECT_EQ(OpenDialog("TesmarkOpt_x64", id, m_procedure), kDialogNotShown);
    }
    EXPECT_THAT(m_procedure.m_heard, IsEmpty());
}

TEST_F(OpenDialogOnLinux, TheStoresProgramShowsTheDialogsOfTheLoadedLibrary) {
    Configure(SCRIPTED_PROGRAM);
    m_procedure.onButton = [](platform::DialogWindow& window) { window.End(1); };
    SetVariable("DIALOG_SCRIPT", AllUpToShown() + "say button\t1\nrest");
    for (int id = 101; id <= 104; ++id) {
        EXPECT_EQ(OpenDialog("TesmarkOpt_x64", id, m_procedure), 1);
        EXPECT_THAT(Log(), Contains("dialog\t" + std::to_string(id)));
    }
}

TEST_F(OpenDialogOnLinux, ALibraryLoadedUnderAnotherNameShowsNone) {
    Configure(SCRIPTED_PROGRAM);
    SetVariable("DIALOG_SCRIPT", AllUpToShown() + "rest");
    EXPECT_EQ(OpenDialog("TesmarkOpt", 104, m_procedure), kDialogNotShown);
    EXPECT_THAT(m_procedure.m_heard, IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(OpenDialogOnLinux, ATemplateThatTheLibraryLacksStartsNoProgram) {
    Configure(SCRIPTED_PROGRAM);
    EXPECT_EQ(OpenDialog("TesmarkOpt_x64", 105, m_procedure), kDialogNotShown);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(OpenDialogOnLinux, AProgramThatIsNotThereShowsNone) {
    Configure("/not/there");
    EXPECT_EQ(OpenDialog("TesmarkOpt_x64", 104, m_procedure), kDialogNotShown);
    EXPECT_THAT(m_procedure.m_heard, IsEmpty());
}

}  // namespace
