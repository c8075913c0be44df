// Unattended.cpp - part of every test program: neither the display nor the terminal of whoever runs
// the tests is there for the library and the programs that they start.
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>

namespace {

// Before main(), since tests are free to give the variables values of their own.
[[maybe_unused]] const bool g_unattended = [] {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    if (isatty(STDIN_FILENO) == 1) {
        const int nothing = open("/dev/null", O_RDONLY);
        dup2(nothing, STDIN_FILENO);
        close(nothing);
    }
    return true;
}();

}  // namespace
