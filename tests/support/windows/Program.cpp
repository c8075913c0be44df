#include "support/Program.h"

// clang-format off
#include <winsock2.h>
#include <windows.h>
// clang-format on

#include <array>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>

#include "support/Environment.h"
#include "support/TemporaryFolder.h"

namespace {

std::string Contents(const std::string& path) {
    std::ostringstream contents;
    contents << std::ifstream(path, std::ios::binary).rdbuf();
    return contents.str();
}

// As the C library takes a command line apart again.
std::string Quoted(const std::string& argument) {
    std::string text = "\"";
    std::size_t backslashes = 0;
    for (const char c : argument) {
        if (c == '"') text.append(backslashes + 1, '\\');
        backslashes = c == '\\' ? backslashes + 1 : 0;
        text += c;
    }
    return text.append(backslashes, '\\') + "\"";
}

std::string CommandLine(const std::vector<std::string>& arguments) {
    std::string line;
    for (const std::string& argument : arguments) line += Quoted(argument) + " ";
    return line;
}

// A program of the machine below Wine.
bool IsForeign(const std::string& program) {
    return program.starts_with('/') && !program.ends_with(".exe");
}

HANDLE Inheritable(const std::string& path, DWORD access, DWORD disposition) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileA(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                       disposition, 0, nullptr);
}

class StandardStreams {
public:
    StandardStreams(const std::string& in, const std::string& out, const std::string& error)
        : m_handles{Inheritable(in, GENERIC_READ, OPEN_EXISTING),
                    Inheritable(out, GENERIC_WRITE, CREATE_ALWAYS),
                    Inheritable(error, GENERIC_WRITE, CREATE_ALWAYS)} {}
    ~StandardStreams() {
        for (const HANDLE handle : m_handles) CloseHandle(handle);
    }
    StandardStreams(const StandardStreams&) = delete;
    StandardStreams& operator=(const StandardStreams&) = delete;

    void GiveTo(STARTUPINFOA& start) const {
        start.dwFlags |= STARTF_USESTDHANDLES;
        start.hStdInput = m_handles[0];
        start.hStdOutput = m_handles[1];
        start.hStdError = m_handles[2];
    }

private:
    std::array<HANDLE, 3> m_handles;
};

bool Start(std::string line, const ProgramOptions& options, const StandardStreams* streams,
           PROCESS_INFORMATION& started) {
    STARTUPINFOA start{};
    start.cb = sizeof start;
    if (streams != nullptr) streams->GiveTo(start);
    const DWORD flags = options.hasTerminal ? 0 : DETACHED_PROCESS;
    return CreateProcessA(nullptr, line.data(), nullptr, nullptr, streams != nullptr, flags,
                          nullptr, options.folder.empty() ? nullptr : options.folder.c_str(),
                          &start, &started) != 0;
}

int RunWindows(const std::vector<std::string>& arguments, const ProgramOptions& options,
               const std::string& in, const std::string& out, const std::string& error) {
    const StandardStreams streams(in, out, error);
    PROCESS_INFORMATION started{};
    if (!Start(CommandLine(arguments), options, &streams, started)) return -1;
    WaitForSingleObject(started.hProcess, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(started.hProcess, &code);
    CloseHandle(started.hThread);
    CloseHandle(started.hProcess);
    return static_cast<int>(code);
}

// Wine starts a program of the machine below but gives no handle to wait for. So a shell runs it,
// and tells its end and exit code by a connection.
class EndOfForeign {
public:
    EndOfForeign() {
        WSADATA data{};
        WSAStartup(MAKEWORD(2, 2), &data);
        m_listening = socket(AF_INET, SOCK_STREAM, 0);
        m_address.sin_family = AF_INET;
        m_address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        int size = sizeof m_address;
        bind(m_listening, reinterpret_cast<const sockaddr*>(&m_address), size);
        listen(m_listening, 1);
        getsockname(m_listening, reinterpret_cast<sockaddr*>(&m_address), &size);
    }
    ~EndOfForeign() { closesocket(m_listening); }
    EndOfForeign(const EndOfForeign&) = delete;
    EndOfForeign& operator=(const EndOfForeign&) = delete;

    int Port() const { return ntohs(m_address.sin_port); }
    int Wait() const {
        const SOCKET accepted = accept(m_listening, nullptr, nullptr);
        char text[16] = {};
        recv(accepted, text, sizeof text - 1, 0);
        closesocket(accepted);
        const int code = std::atoi(text);
        return code > 126 ? -1 : code;
    }

private:
    SOCKET m_listening;
    sockaddr_in m_address{};
};

std::string ForShell(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
    return quoted + "'";
}

// "c:\x" is a file of the prefix, "z:\x" one of the machine.
std::string ForeignPath(std::string path) {
    if (path.size() < 3 || path[1] != ':') return path;
    for (char& c : path) c = c == '\\' ? '/' : c;
    if (path[0] == 'z' || path[0] == 'Z') return path.substr(2);
    const char drive = static_cast<char>(path[0] | 0x20);
    return std::string(std::getenv("WINEPREFIX")) + "/dosdevices/" + drive + ":" + path.substr(2);
}

int RunForeign(const std::vector<std::string>& arguments, const ProgramOptions& options,
               const std::string& in, const std::string& out, const std::string& error) {
    const EndOfForeign end;
    std::string script;
    if (!options.folder.empty()) script += "cd " + ForShell(ForeignPath(options.folder)) + "; ";
    for (const auto& [name, value] : options.environment) {
        script += "export " + name + "=" + ForShell(ForeignPath(value)) + "; ";
    }
    for (const std::string& argument : arguments) script += ForShell(ForeignPath(argument)) + " ";
    script += "<" + ForShell(ForeignPath(in)) + " >" + ForShell(ForeignPath(out)) + " 2>" +
              ForShell(ForeignPath(error)) + "; echo $? >/dev/tcp/127.0.0.1/" +
              std::to_string(end.Port());
    PROCESS_INFORMATION started{};
    if (!Start(CommandLine({"z:\\bin\\bash", "-c", script}), {}, nullptr, started)) return -1;
    return end.Wait();
}

}  // namespace

ProgramOutcome RunProgram(const std::vector<std::string>& arguments,
                          const ProgramOptions& options) {
    const TemporaryFolder folder;
    const std::string in = folder.Below("in");
    const std::string out = folder.Below("out");
    const std::string error = folder.Below("error");
    const auto run = IsForeign(arguments.front()) ? RunForeign : RunWindows;
    std::vector<std::unique_ptr<SavedVariable>> saved;
    for (const auto& [name, value] : options.environment) {
        saved.push_back(std::make_unique<SavedVariable>(name));
        SetVariable(name, value);
    }
    std::ofstream(in, std::ios::binary) << options.input;
    const int code = run(arguments, options, in, out, error);
    return {code, Contents(out), Contents(error)};
}
