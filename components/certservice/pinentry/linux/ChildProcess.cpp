#include "components/certservice/pinentry/linux/ChildProcess.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

// The header of glibc 2.36 doesn't say by itself that its functions are those of C.
extern "C" {
#include <sys/pidfd.h>
}

namespace {

class SpawnPlan {
public:
    explicit SpawnPlan(int connection) {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_adddup2(&m_actions, connection, STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&m_actions, connection, STDOUT_FILENO);
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

    const posix_spawn_file_actions_t* Actions() const { return &m_actions; }
    const posix_spawnattr_t* Attributes() const { return &m_attributes; }

private:
    posix_spawn_file_actions_t m_actions;
    posix_spawnattr_t m_attributes;
};

bool EndsInTime(int processDescriptor, int milliseconds) {
    pollfd waiting{processDescriptor, POLLIN, 0};
    int ready = 0;
    do {
        ready = poll(&waiting, 1, milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

}  // namespace

pid_t StartChild(const std::string& program, int connection) {
    const SpawnPlan plan(connection);
    char* const arguments[] = {const_cast<char*>(program.c_str()), nullptr};
    pid_t child = -1;
    const int failure =
        posix_spawn(&child, program.c_str(), plan.Actions(), plan.Attributes(), arguments, environ);
    return failure == 0 ? child : -1;
}

void EndChild(pid_t child, int milliseconds) {
    // By descriptor, since a host that waits for any child may have freed the id meanwhile.
    const int descriptor = pidfd_open(child, 0);
    if (descriptor >= 0 && !EndsInTime(descriptor, milliseconds))
        pidfd_send_signal(descriptor, SIGKILL, nullptr, 0);
    if (descriptor >= 0) close(descriptor);
    if (descriptor < 0 && errno != ESRCH) kill(child, SIGKILL);
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}
