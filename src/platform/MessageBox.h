// MessageBox.h - a word to the user that waits for an answer where there is a display.
#pragma once

namespace platform {

constexpr int kMessageBoxWarning = 48;

// Texts are GBK. `style` as MessageBoxA takes it. Without a window system the box is one line on
// standard error in UTF-8, caption and text.
void ShowMessageBox(const char* text, const char* caption, int style);

}  // namespace platform
