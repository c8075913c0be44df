#include "platform/MessageBox.h"

#include "platform/windows/Win32.h"

namespace platform {

void ShowMessageBox(const char* text, const char* caption, int style) {
    MessageBoxA(GetActiveWindow(), text, caption, static_cast<UINT>(style));
}

}  // namespace platform
