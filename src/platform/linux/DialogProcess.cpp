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

class SpawnPlan {
public:
    SpawnPlan(int input, int output) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, input, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, output, STDOUT_FILENO);
        if (fcntl(STDERR_FILENO, F_GETFD) >= 0)
            posix_spawn_file_actions_adddup2(&m_actions, STDERR_FILENO, STDERR_FILENO);
        else
            posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        posix_spawnattr_init(&m_attributes);
        sigset_t signals;
        sigfillset(&signals);
        posix_spawnattr_setsigdefault(&m_attributes, &signals);
        sigemptyset(&signals);
        posix_spawnattr_setsigmask(&m_attributes, &signals);
        posix_spawnattr_setflags(&m_attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&m_actions);
        posix_spawnattr_destroy(&m_attributes);
    }
    SpawnPlan(const SpawnPlan&) = delete;
    SpawnPlan& operator=(const SpawnPlan&) = delete;

    pid_t Start(const std::string& program) const {
        char* const arguments[] = {const_cast<char*>(program.c_str()), nullptr};
        pid_t child = -1;
        const int failure =
            posix_spawn(&child, program.c_str(), &m_actions, &m_attributes, arguments, environ);
        return failure == 0 ? child : -1;
    }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

}  // namespace

std::unique_ptr<DialogProcess> DialogProcess::Start(const std::string& program,
                                                    const DialogLimits& limits) {
    Stream input, output;
    if (!input.Open() || !output.Open()) return nullptr;
    std::unique_ptr<DialogProcess> process(new DialogProcess(limits));
    process->m_child = SpawnPlan(input.theirs, output.theirs).Start(program);
    if (process->m_child < 0) return nullptr;
    // At once: later the host, if it waits for any child, might have freed the id to be another's.
    process->m_process = pidfd_open(process->m_child, 0);
    process->m_input = std::exchange(input.ours, -1);
    process->m_output = std::exchange(output.ours, -1);
    return process;
}

DialogProcess::~DialogProcess() {
    Close(m_input);
    Close(m_output);
    if (m_child < 0) return;
    siginfo_t end{};
    if (m_process < 0) {
        kill(m_child, SIGKILL);
        while (waitpid(m_child, nullptr, 0) < 0 && errno == EINTR) {
        }
        return;
    }
    pollfd waiting[] = {{m_process, POLLIN, 0}};
    if (!Wait(waiting, m_limits.ending)) pidfd_send_signal(m_process, SIGKILL, nullptr, 0);
    while (waitid(P_PIDFD, static_cast<id_t>(m_process), &end, WEXITED) < 0 && errno == EINTR) {
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
        pollfd waiting[] = {{m_input, POLLOUT, 0}};
        if ((errno != EAGAIN && errno != EWOULDBLOCK) || !Wait(waiting, m_limits.writing))
            return false;
    }
    return true;
}

std::optional<std::string> DialogProcess::Read(Patience patience) {
    const bool limited = patience == Patience::Program;
    for (;;) {
        if (auto line = m_reader.Next()) return line;
        if (m_reader.IsTooLong()) return {};
        const std::int64_t begin = NowMilliseconds();
        const bool received = ReceiveWithin(limited ? m_openingLeft : kForever);
        if (limited) m_openingLeft -= std::min(m_openingLeft, NowMilliseconds() - begin);
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
