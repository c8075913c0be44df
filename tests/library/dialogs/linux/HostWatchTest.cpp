#include "tools/dialog/HostWatch.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

bool IsReadable(int descriptor, int milliseconds) {
    pollfd waiting{descriptor, POLLIN, 0};
    return poll(&waiting, 1, milliseconds) == 1;
}

char Next(int pipe) {
    char letter = '-';
    return read(pipe, &letter, 1) == 1 ? letter : '-';
}

// Tells over `told` whether the host is seen to run, and then that it is seen to have ended. Holds
// both ends of the host's stream itself.
[[noreturn]] void BecomeWatcher(int stream, int told) {
    const int host = WatchHost(stream);
    const bool runs = host >= 0 && !IsReadable(host, 0);
    bool isTold = write(told, runs ? "r" : "?", 1) == 1;
    const bool ended = IsReadable(host, 20'000);
    isTold = isTold && write(told, ended ? "e" : "?", 1) == 1;
    _exit(isTold ? 0 : 1);
}

// Makes the stream, forks, and ends as soon as `held` has no writer any more.
[[noreturn]] void BecomeHost(int held, int told) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) _exit(1);
    if (fork() == 0) BecomeWatcher(ends[0], told);
    Next(held);
    _exit(0);
}

TEST(HostWatchOnLinux, TheEndOfTheProcessThatMadeTheStreamIsSeenWhoeverHoldsItsEnds) {
    int held[2], told[2];
    ASSERT_EQ(pipe(held), 0);
    ASSERT_EQ(pipe(told), 0);
    const pid_t host = fork();
    if (host == 0) {
        close(held[1]);
        BecomeHost(held[0], told[1]);
    }
    close(told[1]);
    EXPECT_EQ(Next(told[0]), 'r');
    close(held[1]);
    EXPECT_EQ(Next(told[0]), 'e');
    EXPECT_EQ(waitpid(host, nullptr, 0), host);
    close(held[0]);
    close(told[0]);
}

TEST(HostWatchOnLinux, AStreamThatNoHostHasMadeHasNobodyToWatch) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    EXPECT_EQ(WatchHost(ends[0]), -1);
    for (const int end : ends) close(end);
    EXPECT_EQ(WatchHost(-1), -1);
}

}  // namespace
