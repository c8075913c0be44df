// Holds the desktop while tests come and go; ended with the server. Its argument is a file to make
// when it does.
#include <windows.h>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR ready, int) {
    GetDesktopWindow();
    CloseHandle(CreateFileA(ready, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    Sleep(INFINITE);
    return 0;
}
