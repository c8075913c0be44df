#include "tools/dialog/HostWatch.h"

#include <sys/eventfd.h>
#include <sys/socket.h>

#include <cerrno>

// The header of glibc 2.36 doesn't say by itself that its functions are those of C.
extern "C" {
#include <sys/pidfd.h>
}

int WatchHost(int stream) {
    ucred maker{};
    socklen_t size = sizeof maker;
    if (getsockopt(stream, SOL_SOCKET, SO_PEERCRED, &maker, &size) != 0 || maker.pid <= 0)
        return -1;
    const int process = pidfd_open(maker.pid, 0);
    return process < 0 && errno == ESRCH ? eventfd(1, EFD_CLOEXEC) : process;
}
