// WindowFixture.h - the dialog program's windows on a screen in memory, in this process, with the
// test for both its user and the library.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QPixmap>
#include <QTest>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include "support/Environment.h"
#include "support/TemporaryFolder.h"
#include "tools/dialog/qt/Conversation.h"
#include "tools/dialog/qt/Host.h"

class Preview;
class SealTree;

class WindowFixture : public testing::Test {
protected:
    // The screen has 1024 by 600 pixels.
    void Start(const std::string& scale = "1");
    ~WindowFixture() override;

    Host& Library() { return *m_host; }
    // Greets, and has the template built; what it reported is dropped.
    void Build(int templateId);
    // A tree with one certificate and two seals: the nodes 1 to 4.
    void FillTree();
    void Show();
    // Build, and FillTree where there is a tree, and Show.
    void Open(int templateId);

    // All events that are there.
    static void HandleEvents();
    QDialog& Window();
    template <class Control>
    Control& Only() {
        for (QWidget* const each : Window().findChildren<QWidget*>()) {
            if (auto* const found = dynamic_cast<Control*>(each)) return *found;
        }
        throw std::runtime_error("no such control");
    }
    // The button with that text.
    QWidget& Button(const QString& text);
    void Press(Qt::Key key);
    void Resize(int width, int height);

    // Nothing while the conversation goes on.
    std::optional<int> ExitCode() const { return m_exitCode; }

private:
    TemporaryFolder m_folder;
    SavedVariable m_platform{"QT_QPA_PLATFORM"};
    SavedVariable m_scale{"QT_SCALE_FACTOR"};
    int m_count = 1;
    char m_name[5] = "test";
    char* m_arguments[2] = {m_name, nullptr};
    std::optional<int> m_exitCode;
    std::unique_ptr<QApplication> m_application;
    std::unique_ptr<Conversation> m_conversation;
    int m_end = -1;
    std::unique_ptr<Host> m_host;
};
