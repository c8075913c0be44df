// TopWindow.h - what the dialogs and the message box have in common as windows.
#pragma once

#include <QDialog>
#include <QString>
#include <functional>

// Stays above all others, has no owner, and isn't closed by the user: it tells, and somebody else
// ends it. Comes up within its screen, whatever stands in it, in the middle unless it is moved.
class TopWindow : public QDialog {
public:
    explicit TopWindow(const QString& title);

    // The close box, and the escape key.
    std::function<void()> onClose = [] {};
    std::function<void()> onEscape = [] {};

    // To be called when all is in it: gives it the size and the place that it will come up with,
    // and its controls theirs.
    void LayOut();

    // Returns when the user can see it, or after a while that no window takes but one that is
    // hidden by the session. What the user does and what the library says meanwhile waits.
    void ShowToUser();

    // QDialog's answer to the escape key.
    void reject() override;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;

private:
    void KeepOnScreen();

    std::function<void()> m_onPainted = [] {};
};
