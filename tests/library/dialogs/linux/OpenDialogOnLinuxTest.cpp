#include <gtest/gtest.h>

#include "platform/Dialog.h"
#include "platform/Module.h"

namespace {

class Silent : public platform::DialogProcedure {
public:
    void OnOpen(platform::DialogWindow& window) override {
        m_opened = true;
        window.End(1);
    }

    bool m_opened = false;
};

TEST(OpenDialogOnLinux, NoDialogOfTheLibraryCanBeShown) {
    const platform::ModuleHandle library = platform::LoadModule(LIBRARY_FILE);
    ASSERT_NE(library, nullptr);
    Silent procedure;
    for (int id = 101; id <= 104; ++id) {
        EXPECT_EQ(platform::OpenDialog("TesmarkOpt_x64", id, procedure), platform::kDialogNotShown);
    }
    EXPECT_FALSE(procedure.m_opened);
    platform::FreeModule(library);
}

}  // namespace
