#include "Terminal.h"

#include <atomic>
#include <cwchar>

#include "platform/windows/WideText.h"
#include "platform/windows/Win32.h"

namespace {

std::atomic<bool> g_interrupted = false;

// On a thread of the system's own. When it returns from an event that closes the console, logs the
// user off or shuts down, the process is ended there and then; it has a few seconds.
BOOL WINAPI NoteInterrupt(DWORD event) {
    g_interrupted = true;
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

bool IsConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

class CConsole {
public:
    explicit CConsole(const char* name)
        : m_handle(CreateFileA(name, GENERIC_READ | GENERIC_WRITE,
                               FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0,
                               nullptr)) {}
    ~CConsole() {
        if (m_handle != INVALID_HANDLE_VALUE) CloseHandle(m_handle);
    }
    CConsole(const CConsole&) = delete;
    CConsole& operator=(const CConsole&) = delete;
    HANDLE Get() const { return m_handle; }

private:
    HANDLE m_handle;
};

// The console's input by lines and without echo, and as it was again at the end.
class HiddenInput {
public:
    explicit HiddenInput(HANDLE console) : m_console(console) {
        m_changed = GetConsoleMode(console, &m_former) != 0 &&
                    SetConsoleMode(console, ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT) != 0;
    }
    ~HiddenInput() {
        if (m_changed) SetConsoleMode(m_console, m_former);
    }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

    bool Changed() const { return m_changed; }

private:
    HANDLE m_console;
    DWORD m_former = 0;
    bool m_changed = false;
};

// To the end of the line. False at the end of input or after an interrupt.
bool ReadLine(HANDLE console, std::wstring& line) {
    constexpr wchar_t kEndOfInput = 0x1A;
    for (wchar_t character = 0;;) {
        DWORD count = 0;
        if (!ReadConsoleW(console, &character, 1, &count, nullptr) || count != 1) return false;
        if (character == kEndOfInput && line.empty()) return false;
        if (character == L'\n') return true;
        if (character != L'\r') line += character;
    }
}

bool WriteAll(HANDLE console, const std::string& text) {
    DWORD written = 0;
    return WriteConsoleA(console, text.data(), static_cast<DWORD>(text.size()), &written,
                         nullptr) != 0;
}

}  // namespace

bool StandardErrorIsTerminal() { return IsConsole(GetStdHandle(STD_ERROR_HANDLE)); }

bool StandardInputIsTerminal() { return IsConsole(GetStdHandle(STD_INPUT_HANDLE)); }

std::optional<std::string> ReadHidden(const std::string& prompt) {
    const CConsole input("CONIN$");
    const CConsole output("CONOUT$");
    // An interrupt must not leave the console without echo.
    const InterruptGuard guard;
    const HiddenInput hidden(input.Get());
    std::wstring typed;
    if (!hidden.Changed() || !WriteAll(output.Get(), prompt)) return {};
    const bool whole = ReadLine(input.Get(), typed);
    WriteAll(output.Get(), "\n");
    if (!whole || InterruptGuard::Interrupted()) return {};
    return platform::NarrowFrom(CP_UTF8, typed);
}

InterruptGuard::InterruptGuard() {
    g_interrupted = false;
    SetConsoleCtrlHandler(NoteInterrupt, TRUE);
}

InterruptGuard::~InterruptGuard() { SetConsoleCtrlHandler(NoteInterrupt, FALSE); }

bool InterruptGuard::Interrupted() { return g_interrupted; }
