#include "support/linux/XServer.h"

#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <vector>

namespace {

[[noreturn]] void Become(int displayFile, const std::string& folder) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int nowhere = open("/dev/null", O_RDWR);
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDERR_FILENO);
    dup2(displayFile, STDOUT_FILENO);
    std::vector<const char*> command = {"Xvfb", "-displayfd",  "1",         "-screen",
                                        "0",    "1024x600x24", "-nolisten", "tcp"};
    if (!folder.empty()) command.insert(command.end(), {"-fbdir", folder.c_str()});
    command.push_back(nullptr);
    execvp(command[0], const_cast<char* const*>(command.data()));
    _exit(127);
}

}  // namespace

XServer::XServer(const std::string& folder) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    m_process = fork();
    if (m_process == 0) Become(ends[1], folder);
    close(ends[1]);
    std::array<char, 16> number{};
    FILE* const told = fdopen(ends[0], "r");
    if (fgets(number.data(), number.size(), told) != nullptr) {
        m_display = ":" + std::string(number.data());
        m_display.pop_back();
    }
    fclose(told);
}

XServer::~XServer() {
    if (m_process <= 0) return;
    kill(m_process, SIGTERM);
    waitpid(m_process, nullptr, 0);
}
