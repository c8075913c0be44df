// Holds the desktop while tests come and go; ended with the server.
#include <windows.h>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    GetDesktopWindow();
    Sleep(INFINITE);
    return 0;
}
