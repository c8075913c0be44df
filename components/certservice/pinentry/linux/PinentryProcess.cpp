#include "components/certservice/pinentry/linux/PinentryProcess.h"

#include <assuan.h>
#include <errno.h>
#include <poll.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "components/certservice/pinentry/linux/ChildProcess.h"

namespace {

std::int64_t NowMilliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now.tv_sec * INT64_C(1000) + now.tv_nsec / 1'000'000;
}

PinentryProcess::Connection& ConnectionOf(assuan_context_t context) {
    return *static_cast<PinentryProcess::Connection*>(assuan_get_pointer(context));
}

bool WaitReadable(int descriptor, std::int64_t deadline) {
    pollfd waiting{descriptor, POLLIN, 0};
    int ready = 0;
    do {
        const std::int64_t left = std::max<std::int64_t>(deadline - NowMilliseconds(), 0);
        ready = poll(&waiting, 1, static_cast<int>(left));
    } while (ready < 0 && errno == EINTR);
    return ready > 0;
}

ssize_t ReadInTime(assuan_context_t context, assuan_fd_t descriptor, void* buffer, size_t size) {
    PinentryProcess::Connection& connection = ConnectionOf(context);
    ssize_t count = -1;
    if (WaitReadable(descriptor, connection.deadline))
        count = read(descriptor, buffer, size);
    else
        errno = ETIMEDOUT;
    if (count <= 0) connection.broken = true;
    return count;
}

// What is written is far smaller than the socket's buffer, so a full one means that nobody reads.
ssize_t WriteQuietly(assuan_context_t context, assuan_fd_t descriptor, const void* buffer,
                     size_t size) {
    const ssize_t count = send(descriptor, buffer, size, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0) ConnectionOf(context).broken = true;
    return count;
}

assuan_system_hooks g_hooks = {ASSUAN_SYSTEM_HOOKS_VERSION,
                               __assuan_usleep,
                               __assuan_pipe,
                               __assuan_close,
                               ReadInTime,
                               WriteQuietly,
                               __assuan_recvmsg,
                               __assuan_sendmsg,
                               __assuan_spawn,
                               __assuan_waitpid,
                               __assuan_socketpair,
                               __assuan_socket,
                               __assuan_connect};

gpg_error_t AppendData(void* target, const void* data, size_t size) {
    auto* const text = static_cast<std::string*>(target);
    if (!text) return 0;
    // Not beyond the room that is there: a secret is not to be moved about.
    if (size > text->capacity() - text->size()) return gpg_error(GPG_ERR_TOO_LARGE);
    text->append(static_cast<const char*>(data), size);
    return 0;
}

PinentryAnswer AnswerOf(gpg_error_t error) {
    switch (gpg_err_code(error)) {
        case GPG_ERR_NO_ERROR: return PinentryAnswer::kOk;
        case GPG_ERR_CANCELED:
        case GPG_ERR_FULLY_CANCELED: return PinentryAnswer::kCancelled;
        case GPG_ERR_ASS_INV_RESPONSE:
        case GPG_ERR_ASS_LINE_TOO_LONG:
        case GPG_ERR_ASS_INCOMPLETE_LINE: return PinentryAnswer::kBroken;
        default: return PinentryAnswer::kRefused;
    }
}

}  // namespace

std::unique_ptr<PinentryProcess> PinentryProcess::Start(const std::string& program,
                                                        const PinentryLimits& limits) {
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return nullptr;
    std::unique_ptr<PinentryProcess> process(new PinentryProcess(limits));
    process->m_process = StartChild(program, ends[1]);
    close(ends[1]);
    if (process->m_process < 0) {
        close(ends[0]);
        return nullptr;
    }
    return process->Connect(ends[0]) ? std::move(process) : nullptr;
}

bool PinentryProcess::Connect(int descriptor) {
    if (assuan_new(&m_assuan) != 0) {
        m_assuan = nullptr;
        m_connection.broken = true;
        close(descriptor);
        return false;
    }
    assuan_ctx_set_system_hooks(m_assuan, &g_hooks);
    assuan_set_pointer(m_assuan, &m_connection);
    assuan_begin_confidential(m_assuan);
    m_connection.deadline = NowMilliseconds() + m_limits.command;
    // The context owns the connection from here on, also when this fails.
    if (assuan_socket_connect_fd(m_assuan, descriptor, 0) == 0) return true;
    m_connection.broken = true;
    return false;
}

PinentryProcess::~PinentryProcess() {
    const bool wasBroken = m_connection.broken;
    if (m_assuan) assuan_release(m_assuan);
    if (m_process >= 0) EndChild(m_process, wasBroken ? 0 : m_limits.exit);
}

PinentryAnswer PinentryProcess::Transact(const std::string& line, int limit, std::string* data) {
    if (m_connection.broken) return PinentryAnswer::kBroken;
    m_connection.deadline = NowMilliseconds() + limit;
    const PinentryAnswer answer = AnswerOf(assuan_transact(m_assuan, line.c_str(), AppendData, data,
                                                           nullptr, nullptr, nullptr, nullptr));
    m_connection.broken = m_connection.broken || answer == PinentryAnswer::kBroken;
    return m_connection.broken ? PinentryAnswer::kBroken : answer;
}

PinentryAnswer PinentryProcess::Command(const std::string& line) {
    return Transact(line, m_limits.command, nullptr);
}

PinentryAnswer PinentryProcess::CommandToUser(const std::string& line, std::string& data) {
    return Transact(line, m_limits.user, &data);
}
