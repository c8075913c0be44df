#include "support/Program.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace {

// A file without a name: unlike a pipe it is never full.
class Capture {
public:
    explicit Capture(const std::string& text = "") : m_file(std::tmpfile()) {
        std::fwrite(text.data(), 1, text.size(), m_file);
        std::rewind(m_file);
    }
    ~Capture() { std::fclose(m_file); }
    Capture(const Capture&) = delete;
    Capture& operator=(const Capture&) = delete;

    void TakeOver(int descriptor) const { dup2(fileno(m_file), descriptor); }
    std::string Text() const {
        std::string text;
        std::rewind(m_file);
        char piece[4096];
        while (const std::size_t count = std::fread(piece, 1, sizeof piece, m_file)) {
            text.append(piece, count);
        }
        return text;
    }

private:
    std::FILE* m_file;
};

[[noreturn]] void BecomeProgram(const std::vector<std::string>& arguments,
                                const ProgramOptions& options) {
    if (!options.hasTerminal) setsid();
    for (const auto& [name, value] : options.environment) setenv(name.c_str(), value.c_str(), 1);
    if (!options.folder.empty() && chdir(options.folder.c_str()) != 0) _exit(127);
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    execv(pointers[0], pointers.data());
    _exit(127);
}

}  // namespace

ProgramOutcome RunProgram(const std::vector<std::string>& arguments,
                          const ProgramOptions& options) {
    const Capture in(options.input), out, error;
    const pid_t child = fork();
    if (child == 0) {
        in.TakeOver(STDIN_FILENO);
        out.TakeOver(STDOUT_FILENO);
        error.TakeOver(STDERR_FILENO);
        BecomeProgram(arguments, options);
    }
    int status = 0;
    if (child < 0 || waitpid(child, &status, 0) != child) return {};
    const int code = WIFEXITED(status) && WEXITSTATUS(status) != 127 ? WEXITSTATUS(status) : -1;
    return {code, out.Text(), error.Text()};
}
