// MessageWindow.h - a word to the user, with a button that takes it away.
#pragma once

#include "tools/dialog/qt/TopWindow.h"

// The icon of `style`, as MessageBoxA takes it, and "确定", whatever buttons it asks for: nobody is
// told which one was pressed. A text of any length can be read: what doesn't fit on the screen
// scrolls.
class MessageWindow : public TopWindow {
public:
    MessageWindow(int style, const QString& caption, const QString& text);

    // In whatever way.
    std::function<void()> onAnswered = [] {};
};
