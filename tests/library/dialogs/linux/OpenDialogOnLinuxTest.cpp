#include <gmock/gmock.h>

#include <utility>

#include "dialogs/CertSealTree.h"
#include "dialogs/CertSelect.h"
#include "dialogs/DialogFrame.h"
#include "dialogs/OnlineSealSelect.h"
#include "dialogs/OnlineUrl.h"
#include "dialogs/PzmSealTree.h"
#include "library/dialogs/linux/DialogProcessTest.h"
#include "platform/Module.h"
#include "platform/RegistryStore.h"
#include "support/TemporaryFolder.h"

namespace {

using platform::kDialogNotShown;
using platform::OpenDialog;
using testing::Contains;
using testing::IsEmpty;

// Holds a library loaded.
class LoadedLibrary {
public:
    void Load(const std::string& path) {
        m_module = platform::LoadModule(path.c_str());
        ASSERT_NE(m_module, nullptr);
    }
    void Unload() { platform::FreeModule(std::exchange(m_module, nullptr)); }
    int SetOnlineUrl() const {
        return reinterpret_cast<int (*)()>(platform::FindSymbol(m_module, "SetOnlineUrl"))();
    }

private:
    platform::ModuleHandle m_module = nullptr;
};

class LibraryDialogs : public DialogProcessTest {
protected:
    void Configure(const char* path) const {
        const auto key = platform::CreateRegistryKey(
            platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
            "software\\Velmora\\platform");
        ASSERT_TRUE(platform::SetRegistryPath(key, "DialogProgram", path));
        platform::CloseRegistryKey(key);
    }
};

// The built library is loaded, and its dialogs are shown by a program that plays a script.
class OpenDialogOnLinux : public LibraryDialogs {
protected:
    // Loaded beforehand: its neighbours hold descriptors of their own.
    static void SetUpTestSuite() { s_library.Load(LIBRARY_FILE); }
    static void TearDownTestSuite() { s_library.Unload(); }

    static inline LoadedLibrary s_library;
};

// A copy of it is, under a name of its own. Nothing else has loaded it.
class RenamedLibraryOnLinux : public LibraryDialogs {
protected:
    void LoadAs(const std::string& stem) {
        const std::string path = m_folder.Below(platform::ModuleFileName(stem.c_str()));
        std::filesystem::copy_file(LIBRARY_FILE, path);
        LinkNeighbours();
        m_library.Load(path);
        ASSERT_EQ(platform::LoadedModulePath(stem.c_str()), path);
        ASSERT_EQ(platform::LoadedModulePath("TesmarkOpt_x64"), "");
        Configure(SCRIPTED_PROGRAM);
        m_procedure.onButton = [](platform::DialogWindow& window) { window.End(1); };
        SetVariable("DIALOG_SCRIPT", AllUpToShown() + "say button\t1\nrest");
    }
    // The library finds the others beside itself.
    void LinkNeighbours() const {
        const std::filesystem::path library = LIBRARY_FILE;
        for (const auto& entry : std::filesystem::directory_iterator(library.parent_path())) {
            const auto name = entry.path().filename();
            if (entry.path().extension() == ".so" && name != library.filename())
                std::filesystem::create_symlink(entry.path(), m_folder.Below(name.string()));
        }
    }
    // Before the descriptors are compared.
    void TearDown() override { m_library.Unload(); }

    TemporaryFolder m_folder;
    LoadedLibrary m_library;
};

TEST_F(OpenDialogOnLinux, WithoutAProgramNoDialogCanBeShown) {
    for (int id = 101; id <= 104; ++id) {
        EXPECT_EQ(OpenDialog("TesmarkOpt_x64", id, m_procedure), kDialogNotShown);
    }
    EXPECT_THAT(m_procedure.m_heard, IsEmpty());
}

TEST_F(OpenDialogOnLinux, WithoutAProgramTheAddressCannotBeAskedFor) {
    EXPECT_EQ(s_library.SetOnlineUrl(), -2);
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

TEST_F(RenamedLibraryOnLinux, ALibraryUnderAnotherNameShowsNoDialogUnderTheOld) {
    LoadAs("TesmarkOpt_x64_2");
    for (int id = 101; id <= 104; ++id) {
        EXPECT_EQ(OpenDialog("TesmarkOpt_x64", id, m_procedure), kDialogNotShown);
    }
    EXPECT_THAT(m_procedure.m_heard, IsEmpty());
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(RenamedLibraryOnLinux, NoneOfItsOpenersStartsAProgram) {
    LoadAs("TesmarkOpt_x64_2");
    EXPECT_EQ(ShowCertSelect(), kDialogNotShown);
    EXPECT_EQ(ShowOnlineSealSelect(), kDialogNotShown);
    EXPECT_EQ(ShowOnlineUrl(), kDialogNotShown);
    CertSealPick picked{7, 8};
    EXPECT_EQ(ShowCertSealTree(&picked), DialogEnd::Failed);
    EXPECT_EQ(picked.certIndex, 7);
    EXPECT_EQ(picked.sealIndex, 8);
    PzmSealPick scanned;
    EXPECT_EQ(ShowPzmSealTree(&scanned), DialogEnd::Failed);
    EXPECT_EQ(m_library.SetOnlineUrl(), -2);
    EXPECT_THAT(Log(), IsEmpty());
}

TEST_F(RenamedLibraryOnLinux, WithoutTheSuffixItShowsTheDialogOfTheOnlineSealsAlone) {
    LoadAs("TesmarkOpt");
    EXPECT_EQ(ShowCertSelect(), kDialogNotShown);
    EXPECT_THAT(Log(), IsEmpty());
    EXPECT_EQ(OpenDialog(kOnlineSealDialogModule, 102, m_procedure), 1);
    EXPECT_THAT(Log(), Contains("dialog\t102"));
}

}  // namespace
