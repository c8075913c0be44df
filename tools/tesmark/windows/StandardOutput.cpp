#include "StandardOutput.h"

#include <io.h>

#include "platform/windows/Win32.h"

namespace {

std::FILE* g_kept = nullptr;

// A child that held it would keep whoever reads a pipe waiting for its end.
void WithholdFromChildren(int descriptor) {
    SetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)), HANDLE_FLAG_INHERIT,
                         0);
}

}  // namespace

std::FILE* StandardOutput() { return g_kept ? g_kept : stdout; }

void KeepStandardOutput() {
    const int output = _fileno(stdout);
    const int error = _fileno(stderr);
    // Below 0 where the process has none.
    const bool exist = output >= 0 && error >= 0;
    const int kept = exist && !_isatty(output) ? _dup(output) : -1;
    if (kept < 0) return;
    WithholdFromChildren(kept);
    std::FILE* const stream = _fdopen(kept, "wb");
    if (stream && _dup2(error, output) == 0) {
        g_kept = stream;
    } else if (stream) {
        std::fclose(stream);
    } else {
        _close(kept);
    }
}
