// The standard output that the program keeps for itself.

#include "StandardOutput.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>

#include <cstdlib>

#include "platform/windows/Win32.h"

namespace {

bool IsInherited(std::FILE* stream) {
    DWORD flags = HANDLE_FLAG_INHERIT;
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    return !GetHandleInformation(handle, &flags) || (flags & HANDLE_FLAG_INHERIT) != 0;
}

[[noreturn]] void KeepPipeAndEnd() {
    int pipe[2] = {-1, -1};
    _pipe(pipe, 512, _O_BINARY);
    _dup2(pipe[1], _fileno(stdout));
    KeepStandardOutput();
    const bool isKept = StandardOutput() != stdout;
    std::exit(isKept && !IsInherited(StandardOutput()) ? 0 : 1);
}

TEST(StandardOutputOnWindows, TheOneThatIsKeptIsNoChilds) {
    EXPECT_EXIT(KeepPipeAndEnd(), testing::ExitedWithCode(0), "");
}

}  // namespace
