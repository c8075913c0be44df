// OpenDialogTest.h - dialogs of the built library, shown and used by the test.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>

#include "dialogs/DialogFrame.h"
#include "dialogs/Resource.h"
#include "platform/Module.h"
#include "support/TemporaryPrefix.h"
#include "support/windows/DialogUser.h"

// A dialog that OK confirms, and that does at its events what the test says.
class TestedDialog : public CDialogFrame {
public:
    using Act = std::function<void(platform::DialogWindow&)>;

    void OnOpen(platform::DialogWindow& window) override {
        ++m_opened;
        if (m_open) m_open(window);
    }
    bool OnNodeSelected(platform::DialogWindow& window, int) override {
        if (m_select) m_select(window);
        return true;
    }

    Act m_open;
    Act m_other;
    Act m_select;
    Act m_confirm = [](platform::DialogWindow& window) { window.End(kDialogConfirmed); };
    int m_opened = 0;

protected:
    void OnConfirm(platform::DialogWindow& window) override { m_confirm(window); }
    bool OnOtherButton(platform::DialogWindow& window, int) override {
        if (m_other) m_other(window);
        return true;
    }
};

class OpenDialogOnWindowsTest : public testing::Test {
protected:
    ~OpenDialogOnWindowsTest() override { platform::FreeModule(m_library); }

    void LoadLibraryAs(const std::string& name) {
        const std::string path = m_prefix.Below(name);
        ASSERT_NE(CopyFileA(LIBRARY_FILE, path.c_str(), TRUE), 0);
        m_library = platform::LoadModule(path.c_str());
        ASSERT_NE(m_library, nullptr);
    }
    int Show(int templateId, DialogUser::Act act) {
        const DialogUser user(std::move(act));
        return platform::OpenDialog(kDialogModule, templateId, m_dialog);
    }

    TemporaryPrefix m_prefix;
    platform::ModuleHandle m_library = nullptr;
    TestedDialog m_dialog;
};
