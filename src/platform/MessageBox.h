// MessageBox.h - a word to the user that waits for an answer where a user can give one.
#pragma once

namespace platform {

constexpr int kMessageBoxWarning = 48;
constexpr int kMessageBoxInformation = 64;

// Texts are GBK. `style` as MessageBoxA takes it. Blocks until the user has answered. Where dialogs
// are shown by a program, it shows the box too, in a window or on the host's terminal; without such
// a program, or if it fails before the box is visible, the box is one line on standard error in
// UTF-8, caption and text with blanks for control characters, and nobody waits. No signal reaches
// the host, also if nobody reads that line.
void ShowMessageBox(const char* text, const char* caption, int style);

}  // namespace platform
