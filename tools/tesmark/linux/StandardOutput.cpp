#include "StandardOutput.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

std::FILE* g_kept = nullptr;

}  // namespace

std::FILE* StandardOutput() { return g_kept ? g_kept : stdout; }

void KeepStandardOutput() {
    // The certificate service knows by it where to ask for a PIN.
    if (isatty(STDOUT_FILENO) == 1) return;
    const int kept = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    if (kept < 0) return;
    std::FILE* const stream = fdopen(kept, "w");
    if (stream && dup2(STDERR_FILENO, STDOUT_FILENO) >= 0) {
        g_kept = stream;
    } else if (stream) {
        std::fclose(stream);
    } else {
        close(kept);
    }
}
