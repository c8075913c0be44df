#include <dlfcn.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <pty.h>
#include <unistd.h>

#include "library/dialogs/linux/DialogProcessTest.h"
#include "platform/MessageBox.h"
#include "platform/RegistryStore.h"

namespace {

using platform::FindDialogProgram;
using testing::ElementsAre;

// What `find` gives in a process of its own that has a terminal of its own, in whose foreground it
// runs; its standard error isn't there without `withError`.
std::string OnTerminal(const std::function<std::string()>& find, bool withError = true) {
    int answer[2];
    if (pipe2(answer, O_CLOEXEC) != 0) return "no pipe";
    int terminal = -1;
    const pid_t host = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (host == 0) {
        if (!withError) dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDERR_FILENO);
        const std::string found = find();
        const ssize_t told = write(answer[1], found.data(), found.size());
        _exit(told == static_cast<ssize_t>(found.size()) ? 0 : 1);
    }
    close(answer[1]);
    std::string found(4096, '\0');
    const ssize_t size = read(answer[0], found.data(), found.size());
    found.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
    int status = -1;
    waitpid(host, &status, 0);
    EXPECT_EQ(status, 0);
    close(answer[0]);
    close(terminal);
    return found;
}

// The same in a job that the foreground has left in the background.
std::string InBackground(const std::function<std::string()>& find) {
    return OnTerminal([&] {
        int answer[2];
        if (pipe2(answer, O_CLOEXEC) != 0) return std::string("no pipe");
        const pid_t job = fork();
        if (job == 0) {
            setpgid(0, 0);
            const std::string found = find();
            _exit(write(answer[1], found.data(), found.size()) < 0);
        }
        close(answer[1]);
        std::string found(4096, '\0');
        const ssize_t size = read(answer[0], found.data(), found.size());
        found.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
        waitpid(job, nullptr, 0);
        return found;
    });
}

class DialogProgramOnLinux : public DialogProcessTest {
protected:
    DialogProgramOnLinux() {
        ClearVariable("DISPLAY");
        ClearVariable("WAYLAND_DISPLAY");
        std::filesystem::create_directory(m_prefix.Below("bin"));
    }
    void PutProgram(const std::string& name, bool executable = true) const {
        using std::filesystem::perms;
        std::ofstream(m_folder + name) << "#!/bin/false\n";
        if (executable) std::filesystem::permissions(m_folder + name, perms::owner_all);
    }
    std::function<std::string()> FindHere() const {
        return [this] { return FindDialogProgram(m_folder); };
    }
    void Configure(const std::string& path) const {
        const auto key = platform::CreateRegistryKey(
            platform::RegistryRootKey(platform::RegistryRoot::LocalMachine),
            "software\\Velmora\\platform");
        ASSERT_TRUE(platform::SetRegistryPath(key, "DialogProgram", path));
        platform::CloseRegistryKey(key);
    }

    SavedVariable m_display{"DISPLAY"}, m_wayland{"WAYLAND_DISPLAY"};
    std::string m_folder = m_prefix.Below("bin") + "/";
};

TEST_F(DialogProgramOnLinux, WithoutADisplayAndATerminalThereIsNone) {
    PutProgram("tesmark-dialog");
    PutProgram("tesmark-dialog-tty");
    EXPECT_EQ(FindDialogProgram(m_folder), "");
    EXPECT_EQ(OnTerminal(FindHere(), false), "");
}

TEST_F(DialogProgramOnLinux, ADisplayTakesTheProgramWithWindows) {
    PutProgram("tesmark-dialog");
    PutProgram("tesmark-dialog-tty");
    SetVariable("DISPLAY", ":0");
    EXPECT_EQ(OnTerminal(FindHere()), m_folder + "tesmark-dialog");
    SetVariable("DISPLAY", "");
    SetVariable("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_EQ(OnTerminal(FindHere()), m_folder + "tesmark-dialog");
}

TEST_F(DialogProgramOnLinux, ATerminalTakesTheProgramForTerminals) {
    PutProgram("tesmark-dialog");
    PutProgram("tesmark-dialog-tty");
    EXPECT_EQ(OnTerminal(FindHere()), m_folder + "tesmark-dialog-tty");
}

TEST_F(DialogProgramOnLinux, AHostInTheBackgroundOfItsTerminalHasNone) {
    PutProgram("tesmark-dialog-tty");
    EXPECT_EQ(InBackground(FindHere()), "");
}

TEST_F(DialogProgramOnLinux, AProgramThatIsNotInstalledIsNotTaken) {
    SetVariable("DISPLAY", ":0");
    EXPECT_EQ(OnTerminal(FindHere()), "");
    PutProgram("tesmark-dialog-tty");
    EXPECT_EQ(OnTerminal(FindHere()), m_folder + "tesmark-dialog-tty");
    PutProgram("tesmark-dialog", false);
    EXPECT_EQ(OnTerminal(FindHere()), m_folder + "tesmark-dialog-tty");
}

TEST_F(DialogProgramOnLinux, AFolderWithTheProgramsNameIsNoProgram) {
    std::filesystem::create_directory(m_folder + "tesmark-dialog");
    SetVariable("DISPLAY", ":0");
    EXPECT_EQ(FindDialogProgram(m_folder), "");
    PutProgram("tesmark-dialog-tty");
    EXPECT_EQ(OnTerminal(FindHere()), m_folder + "tesmark-dialog-tty");
}

TEST_F(DialogProgramOnLinux, NoProgramIsTakenFromTheWorkingFolder) {
    PutProgram("tesmark-dialog");
    SetVariable("DISPLAY", ":0");
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(m_folder);
    for (const char* const folder : {"", "./", "../bin/"}) {
        EXPECT_EQ(FindDialogProgram(folder), "") << folder;
    }
    for (const char* const configured : {"tesmark-dialog", "./tesmark-dialog", "bin/../x"}) {
        Configure(configured);
        EXPECT_EQ(FindDialogProgram(m_folder), "") << configured;
    }
    std::filesystem::current_path(before);
}

// A library that was named relative to the working folder, as a host of its own folder does it.
TEST_F(DialogProgramOnLinux, TheLibrarysFolderStaysWhereverTheHostGoes) {
    const std::filesystem::path file = FOLDER_TELLER;
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(file.parent_path());
    void* const library = dlopen(("./" + file.filename().string()).c_str(), RTLD_NOW);
    std::filesystem::current_path(m_folder);
    const auto tell = reinterpret_cast<const char* (*)()>(
        library ? dlsym(library, "TellLibraryFolder") : nullptr);
    const std::string told = tell ? tell() : "";
    std::filesystem::current_path(before);
    if (library) dlclose(library);
    EXPECT_EQ(told, file.parent_path().string() + "/");
}

TEST_F(DialogProgramOnLinux, AProgramsFolderIsThatOfItsFile) {
    EXPECT_EQ(platform::LibraryFolder(),
              std::filesystem::read_symlink("/proc/self/exe").parent_path().string() + "/");
}

TEST_F(DialogProgramOnLinux, TheStoresProgramIsTakenAndNoOther) {
    PutProgram("tesmark-dialog");
    SetVariable("DISPLAY", ":0");
    Configure("/not/there");
    EXPECT_EQ(FindDialogProgram(m_folder), "/not/there");
    Configure("");
    EXPECT_EQ(FindDialogProgram(m_folder), "");
}

TEST_F(DialogProgramOnLinux, AMessageBoxIsShownByTheStoresProgram) {
    Configure(SCRIPTED_PROGRAM);
    SetVariable("DIALOG_SCRIPT",
                std::string(kGreeting) + "hear message\nsay shown\nsay closed\nrest");
    testing::internal::CaptureStderr();
    platform::ShowMessageBox("t", "c", platform::kMessageBoxWarning);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_THAT(Log(), ElementsAre("descriptors 0 1 2", "tesmark-dialog\t1", "message\t48\tc\tt"));
}

TEST_F(DialogProgramOnLinux, AMessageBoxThatCannotBeShownIsALineOnStandardError) {
    for (const std::string& program : {std::string(SCRIPTED_PROGRAM), std::string("/not/there")}) {
        Configure(program);
        SetVariable("DIALOG_SCRIPT", std::string(kGreeting) + "hear message\ndie");
        testing::internal::CaptureStderr();
        platform::ShowMessageBox("t", "c", platform::kMessageBoxWarning);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "c: t\n");
    }
}

TEST_F(DialogProgramOnLinux, TheLineOfAMessageBoxHasNoControlCharacter) {
    testing::internal::CaptureStderr();
    platform::ShowMessageBox("a\x1B[31m\r\nb\t\a\x7F", "印\x9B\b", platform::kMessageBoxWarning);
    const std::string line = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(line.ends_with(": a [31m  b   \n")) << line;
    EXPECT_EQ(line.substr(0, line.size() - 1).find_first_of("\x1B\r\n\t\a\b\x7F"),
              std::string::npos)
        << line;
}

// Shows a message whose line nobody can read, in a process of its own; what that ended with.
int ShowToNobody(const std::function<bool()>& isAsBefore) {
    const pid_t host = fork();
    if (host == 0) {
        int ends[2];
        if (pipe(ends) != 0) _exit(3);
        close(ends[0]);
        dup2(ends[1], STDERR_FILENO);
        platform::ShowMessageBox("t", "c", platform::kMessageBoxWarning);
        _exit(isAsBefore() ? 0 : 4);
    }
    int status = -1;
    waitpid(host, &status, 0);
    return status;
}

bool IsPending(int signal) {
    sigset_t pending;
    sigpending(&pending);
    return sigismember(&pending, signal) == 1;
}

bool IsBlocked(int signal) {
    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    return sigismember(&blocked, signal) == 1;
}

TEST_F(DialogProgramOnLinux, ALineThatNobodyReadsRaisesNoSignalInTheHost) {
    EXPECT_EQ(ShowToNobody([] { return !IsPending(SIGPIPE) && !IsBlocked(SIGPIPE); }), 0);
}

TEST_F(DialogProgramOnLinux, ASignalThatTheHostHasWaitingIsLeftToIt) {
    sigset_t pipe, before;
    sigemptyset(&pipe);
    sigaddset(&pipe, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &pipe, &before);
    EXPECT_EQ(ShowToNobody([] { return !IsPending(SIGPIPE) && IsBlocked(SIGPIPE); }), 0);
    const int wasPending = ShowToNobody([] {
        raise(SIGPIPE);
        platform::ShowMessageBox("t", "c", platform::kMessageBoxWarning);
        return IsPending(SIGPIPE);
    });
    EXPECT_EQ(wasPending, 0);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(DialogProgramOnLinux, AMessageBoxThatWasVisibleIsNotRepeated) {
    Configure(SCRIPTED_PROGRAM);
    SetVariable("DIALOG_SCRIPT", std::string(kGreeting) + "hear message\nsay shown\ndie");
    testing::internal::CaptureStderr();
    platform::ShowMessageBox("t", "c", platform::kMessageBoxWarning);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
