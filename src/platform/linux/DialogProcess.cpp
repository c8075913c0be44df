#include "platform/linux/DialogProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

// The header of glibc 2.36 doesn't say by itself that its functions are those of C.
extern "C" {
#include <sys/pidfd.h>
}

namespace platform {

namespace {

constexpr std::int64_t kForever = -1;

std::int64_t NowMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * INT64_C(1000) + now.tv_nsec / 1'000'000;
}

// Waits for any of them; false if the time has passed. Signals to the host don't cut it short.
template <std::size_t N>
bool Wait(pollfd (&waiting)[N], std::int64_t milliseconds) {
    const std::int64_t end = NowMilliseconds() + milliseconds;
    for (;;) {
        const std::int64_t left = std::max<std::int64_t>(end - NowMilliseconds(), 0);
        const int ready = poll(waiting, N, milliseconds == kForever ? -1 : static_cast<int>(left));
        if (ready >= 0 || errno != EINTR) return ready > 0;
    }
}

bool Ends(int process, std::int64_t milliseconds) {
    pollfd waiting[] = {{process, POLLIN, 0}};
    return Wait(waiting, milliseconds);
}

void End(pid_t child) {
    kill(child, SIGKILL);
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void Close(int& descriptor) {
    if (descriptor >= 0) close(std::exchange(descriptor, -1));
}

// One direction: the host's end and the program's. Both stand above the standard streams, which
// the host may have closed.
struct Stream {
    int ours = -1;
    int theirs = -1;

    bool Open() {
        int ends[2];
        if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
        ours = Raised(ends[0]);
        theirs = Raised(ends[1]);
        return ours >= 0 && theirs >= 0;
    }
    ~Stream() {
        Close(ours);
        Close(theirs);
    }

private:
    static int Raised(int descriptor) {
        if (descriptor > STDERR_FILENO) return descriptor;
        const int raised = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        close(descriptor);
        return raised;
    }
};

// The host's standard error, unless what stands there is a file of its own that no program is meant
// to get.
bool HasStandardError() {
    const int flags = fcntl(STDERR_FILENO, F_GETFD);
    return flags >= 0 && (flags & FD_CLOEXEC) == 0;
}

class SpawnPlan {
public:
    SpawnPlan(int input, int output) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawnattr_init(&m_attributes);
        m_complete = AddStreams(input, output) && AddSignals();
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    // Below 0 if the program can't be started just as it is planned.
    pid_t Start(const std::string& program) const {
        if (!m_complete) return -1;
        char* const arguments[] = {const_cast<char*>(program.c_str()), nullptr};
        pid_t child = -1;
        const int failure =
            posix_spawn(&child, program.c_str(), &m_actions, &m_attributes, arguments, environ);
        return failure == 0 ? child : -1;
    }

private:
    bool AddStreams(int input, int output) {
        const int error =
            HasStandardError()
                ? posix_spawn_file_actions_adddup2(&m_actions, STDERR_FILENO, STDERR_FILENO)
                : posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY,
                                                   0);
        return error == 0 &&
               posix_spawn_file_actions_adddup2(&m_actions, input, STDIN_FILENO) == 0 &&
               posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO) == 0 &&
               posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1) == 0;
    }
    bool AddSignals() {
        sigset_t all, none;
        sigfillset(&all);
        sigemptyset(&none);
        constexpr short kFlags = POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
        return posix_spawnattr_setsigdefault(&m_attributes, &all) == 0 &&
               posix_spawnattr_setsigmask(&m_attributes, &none) == 0 &&
               posix_spawnattr_setflags(&m_attributes, kFlags) == 0;
    }

    bool m_complete = false;
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

}  // namespace

std::unique_ptr<DialogProcess> DialogProcess::Start(const std::string& program,
                                                    const DialogLimits& limits) {
    Stream input, output;
    if (!input.Open() || !output.Open()) return nullptr;
    const pid_t child = SpawnPlan(input.theirs, output.theirs).Start(program);
    if (child < 0) return nullptr;
    // At once: later the host, if it waits for any child, might have freed the id to be another's.
    const int descriptor = pidfd_open(child, 0);
    if (descriptor < 0) {
        End(child);
        return nullptr;
    }
    std::unique_ptr<DialogProcess> process(new DialogProcess(limits));
    process->m_process = descriptor;
    process->m_input = std::exchange(input.ours, -1);
    process->m_output = std::exchange(output.ours, -1);
    return process;
}

DialogProcess::~DialogProcess() {
    // Processes that the host has started meanwhile may hold copies of its ends.
    for (const int stream : {m_input, m_output}) shutdown(stream, SHUT_RDWR);
    Close(m_input);
    Close(m_output);
    if (!Ends(m_process, m_limits.ending)) pidfd_send_signal(m_process, SIGKILL, nullptr, 0);
    siginfo_t end{};
    // A program of another user can't be killed: nobody waits for that one.
    while (Ends(m_process, m_limits.ending) &&
           waitid(P_PIDFD, static_cast<id_t>(m_process), &end, WEXITED) < 0 && errno == EINTR) {
    }
    Close(m_process);
}

bool DialogProcess::Write(const std::string& line) {
    std::size_t written = 0;
    while (written < line.size()) {
        const ssize_t count = send(m_input, line.data() + written, line.size() - written,
                                   MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            written += static_cast<std::size_t>(count);
            continue;
        }
        if (errno == EINTR) continue;
        if ((errno != EAGAIN && errno != EWOULDBLOCK) || !AwaitRoom()) return false;
    }
    return true;
}

bool DialogProcess::AwaitRoom() {
    pollfd waiting[] = {{m_input, POLLOUT, 0}};
    if (m_isOpen) return Wait(waiting, m_limits.writing);
    const std::int64_t begin = NowMilliseconds();
    const bool hasRoom = Wait(waiting, std::min<std::int64_t>(m_limits.writing, m_openingLeft));
    Charge(begin);
    return hasRoom && m_openingLeft > 0;
}

void DialogProcess::Charge(std::int64_t begin) {
    m_openingLeft -= std::min(m_openingLeft, NowMilliseconds() - begin);
}

std::optional<std::string> DialogProcess::Read(Patience patience) {
    const bool limited = patience == Patience::Program;
    m_isOpen = m_isOpen || !limited;
    for (;;) {
        if (auto line = m_reader.Next()) return line;
        if (m_reader.IsTooLong()) return {};
        const std::int64_t begin = NowMilliseconds();
        const bool received = ReceiveWithin(limited ? m_openingLeft : kForever);
        if (limited) Charge(begin);
        if (!received || (limited && m_openingLeft == 0)) return {};
    }
}

// The end of the process is looked for too: another may hold on to its output.
bool DialogProcess::ReceiveWithin(std::int64_t milliseconds) {
    pollfd waiting[] = {{m_output, POLLIN, 0}, {m_process, POLLIN, 0}};
    if (!Wait(waiting, milliseconds)) return false;
    char bytes[16'384];
    ssize_t count = -1;
    do {
        count = recv(m_output, bytes, sizeof bytes, MSG_DONTWAIT);
    } while (count < 0 && errno == EINTR);
    if (count <= 0) return false;
    m_reader.Append({bytes, static_cast<std::size_t>(count)});
    return true;
}

}  // namespace platform
