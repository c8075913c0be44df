// DialogClock.cpp - stands between the library and tesmark-dialog, hands every line on, and notes
// in the file DIALOG_TIMES when the program was started and when it or the library said something
// that a clock is for: a line "MILLISECONDS TEXT" for each.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>

namespace {

double Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1000 + static_cast<double>(now.tv_nsec) / 1e6;
}

class CTimes {
public:
    CTimes() = default;
    CTimes(const CTimes&) = delete;
    CTimes& operator=(const CTimes&) = delete;
    ~CTimes() { std::fclose(m_file); }
    void Note(std::string_view line) {
        std::fprintf(m_file, "%.3f %.*s\n", Now(), static_cast<int>(line.size()), line.data());
        std::fflush(m_file);
    }

private:
    std::FILE* m_file = std::fopen(std::getenv("DIALOG_TIMES"), "a");
};

bool IsTimedOfProgram(std::string_view line) {
    return line == "shown" || line.starts_with("selected\t") || line.starts_with("node\t");
}

bool IsTimedOfLibrary(std::string_view line) { return line == "done"; }

// Lines may be of several mebibytes; none of those is timed.
void HandOn(std::FILE* from, int to, bool isTimed(std::string_view)) {
    CTimes times;
    char* line = nullptr;
    std::size_t room = 0;
    for (ssize_t length; (length = getline(&line, &room, from)) > 0;) {
        const std::string_view text(line, static_cast<std::size_t>(length - 1));
        for (ssize_t told = 0; told < length;) {
            const ssize_t count = write(to, line + told, static_cast<std::size_t>(length - told));
            if (count <= 0) break;
            told += count;
        }
        if (isTimed(text)) times.Note(text);
    }
    std::free(line);
    close(to);
}

}  // namespace

int main() {
    CTimes().Note("started");
    int down[2];
    int up[2];
    if (pipe2(down, O_CLOEXEC) != 0 || pipe2(up, O_CLOEXEC) != 0) return 2;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, down[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, up[1], STDOUT_FILENO);
    char* const arguments[] = {const_cast<char*>(DIALOG), nullptr};
    pid_t program = 0;
    if (posix_spawn(&program, DIALOG, &actions, nullptr, arguments, environ) != 0) return 2;
    close(down[0]);
    close(up[1]);
    std::thread toProgram([&] { HandOn(stdin, down[1], IsTimedOfLibrary); });
    HandOn(fdopen(up[0], "r"), STDOUT_FILENO, IsTimedOfProgram);
    toProgram.detach();
    int status = 0;
    waitpid(program, &status, 0);
    std::_Exit(WIFEXITED(status) ? WEXITSTATUS(status) : 1);
}
