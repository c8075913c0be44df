#include "library/dialogs/linux/DialogProcessTest.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstddef>
#include <stdexcept>

namespace {

using platform::DialogWindow;
using platform::kDialogNotShown;
using testing::ElementsAre;
using testing::IsEmpty;

class DialogProcessOnLinux : public DialogProcessTest {};

void EndWith7(DialogWindow& window) { window.End(7); }

TEST_F(DialogProcessOnLinux, AButtonOfTheProgramReachesTheProcedureAndItsEndTheProgram) {
    m_procedure.onButton = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say button\t1\nhear end\nrest"), 7);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "button 1"));
    EXPECT_THAT(
        Log(), ElementsAre("descriptors 0 1 2", "tesmark-dialog\t1", "dialog\t104", "show", "end"));
}

TEST_F(DialogProcessOnLinux, AnEventThatDoesNotEndTheDialogIsToldAsDone) {
    m_procedure.onNode = [](DialogWindow&) {};
    m_procedure.onButton = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say selected\t1004\nhear done\nsay button\t1\nrest"), 7);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "node 1004", "button 1"));
}

TEST_F(DialogProcessOnLinux, ADialogThatEndsAtItsOpeningIsNeverShown) {
    m_procedure.onOpen = EndWith7;
    EXPECT_EQ(Run(std::string(kGreeting) + kBuilding + "rest"), 7);
    EXPECT_THAT(Log(), ElementsAre("descriptors 0 1 2", "tesmark-dialog\t1", "dialog\t104", "end"));
}

TEST_F(DialogProcessOnLinux, AProgramThatEndsBeforeItsWindowIsBuiltShowsNothing) {
    EXPECT_EQ(Run("die"), kDialogNotShown);
    EXPECT_EQ(Run("hear tesmark-dialog\ndie"), kDialogNotShown);
    EXPECT_EQ(Run(std::string(kGreeting) + "hear dialog\ndie"), kDialogNotShown);
    EXPECT_EQ(Run(std::string(kGreeting) + "hear dialog\nsay ready\t0\t0\t1\t1\ndie"),
              kDialogNotShown);
    EXPECT_THAT(m_procedure.m_heard, IsEmpty());
}

TEST_F(DialogProcessOnLinux, AProgramThatEndsBehindItsBuildingHeardOnlyTheOpening) {
    EXPECT_EQ(Run(std::string(kGreeting) + kBuilding + "die"), kDialogNotShown);
    EXPECT_EQ(Run(std::string(kGreeting) + kBuilding + "hear show\ndie"), kDialogNotShown);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "open"));
}

TEST_F(DialogProcessOnLinux, AProgramThatEndsWhileItsWindowIsVisibleClosesTheDialog) {
    m_procedure.onClose = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "die"), 7);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "close"));
}

TEST_F(DialogProcessOnLinux, AnEventBeforeTheProgramsEndStillCounts) {
    m_procedure.onButton = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say button\t1\ndie"), 7);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "button 1"));
}

TEST_F(DialogProcessOnLinux, AClosingThatIsLeftAlonePressesCancel) {
    m_procedure.onButton = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say close\nrest"), 7);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "close", "button 2"));
}

TEST_F(DialogProcessOnLinux, ADialogThatRefusesToCloseIsOverWithItsProgram) {
    EXPECT_EQ(Run(AllUpToShown() + "die"), kDialogNotShown);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "close", "button 2"));
}

TEST_F(DialogProcessOnLinux, RubbishBeforeTheWindowIsNoWindow) {
    for (const char* const greeting :
         {"say hello", "say tesmark-dialog\t2", "say tesmark-dialog", "say tesmark-dialog\t1\t1",
          "say shown", "say tesmark-dialog\t1\xFF", "long", "flood x"}) {
        EXPECT_EQ(Run(greeting + std::string("\nrest")), kDialogNotShown) << greeting;
    }
    const std::string greeted = kGreeting + std::string("hear dialog\n");
    for (const char* const answer :
         {"unknown", "built", "ready\t1\t2\t3", "ready\t1\t2\t3\tx", "ready\t1\t2\t3\t4\nsay built",
          "ready\t1\t2\t3\t4\nsay area\t1", "ready\t-2147483648\t0\t2147483647\t1",
          "ready\t0\t0\t1000001\t1", "ready\t5\t5\t4\t5",
          "ready\t1\t2\t3\t4\nsay area\t0\t0\t0\t-1", "shown"}) {
        EXPECT_EQ(Run(greeted + "say " + answer + "\nrest"), kDialogNotShown) << answer;
    }
    EXPECT_EQ(Run(greeted + "say ready\t1\t2\t3\t4\nsay area\nflood surface\t1005\t1\t1"),
              kDialogNotShown);
    EXPECT_THAT(m_procedure.m_heard, IsEmpty());
}

TEST_F(DialogProcessOnLinux, RubbishBehindTheWindowClosesTheDialog) {
    m_procedure.onClose = EndWith7;
    for (const char* const line :
         {"say what", "say shown", "say button\t1003", "say button\t9", "say selected\t1",
          "say node\t1004\t1", "say row\t1004\t0", "say text\t1003\tx", "say button", "long",
          "say button\t1\x01", "say surface\t1005\t-1\t1", "flood surface\t1005\t1\t1"}) {
        m_procedure.m_heard.clear();
        EXPECT_EQ(Run(AllUpToShown() + line + "\nrest"), 7) << line;
        EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "close")) << line;
    }
}

TEST_F(DialogProcessOnLinux, AProgramThatIsSilentBeforeItsWindowIsGivenUpInTime) {
    EXPECT_EQ(Run("hang", kImpatient), kDialogNotShown);
    EXPECT_EQ(Run(std::string(kGreeting) + "hang", kImpatient), kDialogNotShown);
    EXPECT_EQ(Run(std::string(kGreeting) + kBuilding + "hang", kImpatient), kDialogNotShown);
    EXPECT_EQ(Run("raw tesmark-dial\nhang", kImpatient), kDialogNotShown);
}

TEST_F(DialogProcessOnLinux, AProgramThatStaysIsKilledAndTheEndHolds) {
    m_procedure.onButton = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say button\t1\nhang", {60'000, 60'000, 100}), 7);
}

TEST_F(DialogProcessOnLinux, AProgramThatStopsReadingIsGivenUp) {
    m_procedure.onNode = [](DialogWindow& window) {
        for (int i = 0; i < 10'000; ++i) window.SetText(1005, std::string(1'000, 'x'));
    };
    m_procedure.onClose = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say selected\t1004\nhang", {60'000, 200, 100}), 7);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "node 1004", "close"));
}

TEST_F(DialogProcessOnLinux, AProgramThatClosesItsInputIsToldNothingAndCloses) {
    m_procedure.onNode = [](DialogWindow& window) { window.SetText(1005, "x"); };
    m_procedure.onClose = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "close input\nsay selected\t1004\nhang", {60'000, 60'000, 100}),
              7);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open", "node 1004", "close"));
}

TEST_F(DialogProcessOnLinux, AProgramThatClosesItsOutputCloses) {
    m_procedure.onClose = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "close output\nhang", {60'000, 60'000, 100}), 7);
}

TEST_F(DialogProcessOnLinux, AProgramWhoseStreamsOutliveItHasEndedAllTheSame) {
    m_procedure.onClose = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "heir"), 7);
}

TEST_F(DialogProcessOnLinux, WhatTheProcedureThrowsPassesThroughAndTheProgramIsClosed) {
    const auto fail = [](DialogWindow&) { throw std::runtime_error("from within"); };
    m_procedure.onOpen = fail;
    EXPECT_THROW(Run(AllUpToShown() + "rest"), std::runtime_error);
    m_procedure.onOpen = nullptr;
    m_procedure.onButton = fail;
    EXPECT_THROW(Run(AllUpToShown() + "say button\t1\nrest"), std::runtime_error);
}

TEST_F(DialogProcessOnLinux, ASecondDialogFromWithinAnEventHasAProgramOfItsOwn) {
    RecordingProcedure inner;
    inner.onButton = [](DialogWindow& window) { window.End(1); };
    const std::string script = AllUpToShown() + "say button\t1\nrest";
    m_procedure.onButton = [&](DialogWindow& window) {
        const auto process = platform::DialogProcess::Start(SCRIPTED_PROGRAM, kPatient);
        ASSERT_NE(process, nullptr);
        window.End(10 + platform::RunDialog(*process, *platform::FindTemplate(103), inner));
    };
    EXPECT_EQ(Run(script), 11);
    EXPECT_THAT(inner.m_heard, ElementsAre("open", "button 1"));
}

TEST_F(DialogProcessOnLinux, TheProgramGetsThreeDescriptorsAndFreshSignals) {
    const int leak = open("/dev/null", O_RDONLY);
    ASSERT_GT(leak, 2);
    sigset_t blocked, before;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, &before);
    const auto handler = signal(SIGINT, SIG_IGN);
    m_procedure.onOpen = EndWith7;
    EXPECT_EQ(Run(AllUpToShown()), 7);
    signal(SIGINT, handler);
    sigprocmask(SIG_SETMASK, &before, nullptr);
    close(leak);
    ASSERT_FALSE(Log().empty());
    EXPECT_EQ(Log()[0], "descriptors 0 1 2");
}

TEST_F(DialogProcessOnLinux, AHostWithAThousandDescriptorsIsServed) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    const rlimit wide{std::min<rlim_t>(limit.rlim_max, 4096), limit.rlim_max};
    if (limit.rlim_cur < wide.rlim_cur) setrlimit(RLIMIT_NOFILE, &wide);
    std::vector<int> open;
    for (int i = 0; i < 1100; ++i) open.push_back(dup(STDERR_FILENO));
    EXPECT_GT(open.back(), 1024);
    m_procedure.onButton = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say button\t1\nrest"), 7);
    for (const int descriptor : open) close(descriptor);
    setrlimit(RLIMIT_NOFILE, &limit);
    ASSERT_FALSE(Log().empty());
    EXPECT_EQ(Log()[0], "descriptors 0 1 2");
}

TEST_F(DialogProcessOnLinux, AHostWithoutStandardStreamsIsServed) {
    const int saved[] = {dup(0), dup(1), dup(2)};
    for (int stream = 0; stream < 3; ++stream) close(stream);
    m_procedure.onButton = EndWith7;
    const int result = Run(AllUpToShown() + "say button\t1\nrest");
    for (int stream = 0; stream < 3; ++stream) {
        if (saved[stream] >= 0) dup2(saved[stream], stream);
        if (saved[stream] > 2) close(saved[stream]);
    }
    EXPECT_EQ(result, 7);
    ASSERT_FALSE(Log().empty());
    EXPECT_EQ(Log()[0], "descriptors 0 1 2");
}

// While it lives, this process can open so many descriptors and no more.
class FewDescriptors {
public:
    explicit FewDescriptors(std::size_t spare) {
        getrlimit(RLIMIT_NOFILE, &m_limit);
        const rlimit narrow{64, m_limit.rlim_max};
        setrlimit(RLIMIT_NOFILE, &narrow);
        for (int taken = dup(2); taken >= 0; taken = dup(2)) m_taken.push_back(taken);
        for (; spare > 0 && !m_taken.empty(); --spare) {
            close(m_taken.back());
            m_taken.pop_back();
        }
    }
    ~FewDescriptors() {
        for (const int taken : m_taken) close(taken);
        setrlimit(RLIMIT_NOFILE, &m_limit);
    }
    FewDescriptors(const FewDescriptors&) = delete;
    FewDescriptors& operator=(const FewDescriptors&) = delete;

private:
    rlimit m_limit{};
    std::vector<int> m_taken;
};

TEST_F(DialogProcessOnLinux, AHostWithoutADescriptorToSpareShowsNothing) {
    const FewDescriptors few(0);
    EXPECT_EQ(platform::DialogProcess::Start(SCRIPTED_PROGRAM, kPatient), nullptr);
}

// Four descriptors are enough for the streams, and none is left for the process.
TEST_F(DialogProcessOnLinux, AProgramWhoseProcessHasNoDescriptorIsEndedAndShowsNothing) {
    SetVariable("DIALOG_SCRIPT", "hang");
    const FewDescriptors few(4);
    EXPECT_EQ(platform::DialogProcess::Start(SCRIPTED_PROGRAM, kPatient), nullptr);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
}

TEST_F(DialogProcessOnLinux, AFileOfTheHostsInStandardErrorsPlaceIsNotForTheProgram) {
    const std::string file = m_prefix.Below("own");
    const int saved = dup(STDERR_FILENO);
    close(STDERR_FILENO);
    const int own = open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    m_procedure.onButton = EndWith7;
    const int result = Run(AllUpToShown() + "complain aloud\nsay button\t1\nrest");
    dup2(saved, STDERR_FILENO);
    close(saved);
    EXPECT_EQ(own, STDERR_FILENO);
    EXPECT_EQ(result, 7);
    EXPECT_EQ(std::filesystem::file_size(file), 0U);
    ASSERT_FALSE(Log().empty());
    EXPECT_EQ(Log()[0], "descriptors 0 1 2");
}

TEST_F(DialogProcessOnLinux, StandardErrorIsTheHosts) {
    m_procedure.onButton = EndWith7;
    testing::internal::CaptureStderr();
    EXPECT_EQ(Run(AllUpToShown() + "complain aloud\nsay button\t1\nrest"), 7);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "aloud\n");
}

// From here on this process may not send signals by descriptors of processes.
void ForbidToKill() {
    sock_filter steps[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_send_signal, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{std::size(steps), steps};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        _exit(3);
}

TEST_F(DialogProcessOnLinux, AProgramThatStaysAndMayNotBeKilledIsLeft) {
    const pid_t host = fork();
    if (host == 0) {
        alarm(30);
        ForbidToKill();
        m_procedure.onButton = EndWith7;
        _exit(Run(AllUpToShown() + "say button\t1\nhang", {60'000, 60'000, 100}));
    }
    int status = -1;
    ASSERT_EQ(waitpid(host, &status, 0), host);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 7);
}

// A host that forks while a dialog is open: the other one has all its descriptors.
TEST_F(DialogProcessOnLinux, AnotherProcessWithTheHostsEndsDoesNotKeepTheProgram) {
    pid_t other = -1;
    m_procedure.onButton = [&](DialogWindow& window) {
        other = fork();
        if (other == 0) {
            for (;;) pause();
        }
        window.End(7);
    };
    EXPECT_EQ(Run(AllUpToShown() + "say button\t1\nrest\nnote over"), 7);
    ASSERT_GT(other, 0);
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    EXPECT_EQ(Log().back(), "over");
}

// Without a bound of its own for what is written: only the opening's time is left.
TEST_F(DialogProcessOnLinux, WhatIsWrittenBeforeTheWindowIsThereTakesOfTheOpeningsTime) {
    m_procedure.onOpen = [](DialogWindow& window) {
        for (int i = 0; i < 100; ++i) window.SetText(1005, std::string(100'000, 'x'));
    };
    EXPECT_EQ(Run(std::string(kGreeting) + kBuilding + "hang", {3'000, 24 * 3'600'000, 100}),
              kDialogNotShown);
    EXPECT_THAT(m_procedure.m_heard, ElementsAre("open"));
}

TEST_F(DialogProcessOnLinux, AHostThatIgnoresItsChildrenIsServed) {
    signal(SIGCHLD, SIG_IGN);
    m_procedure.onButton = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say button\t1\nrest"), 7);
    signal(SIGCHLD, SIG_DFL);
}

TEST_F(DialogProcessOnLinux, AHostThatWaitsForAnyChildItselfIsServed) {
    signal(SIGCHLD, [](int) {
        const int error = errno;
        while (waitpid(-1, nullptr, WNOHANG) > 0) {
        }
        errno = error;
    });
    m_procedure.onClose = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "die"), 7);
    signal(SIGCHLD, SIG_DFL);
}

TEST_F(DialogProcessOnLinux, AnotherChildOfTheHostIsLeftToIt) {
    const pid_t other = fork();
    if (other == 0) _exit(5);
    ASSERT_GT(other, 0);
    m_procedure.onButton = EndWith7;
    EXPECT_EQ(Run(AllUpToShown() + "say button\t1\nrest"), 7);
    int status = 0;
    EXPECT_EQ(waitpid(other, &status, 0), other);
    EXPECT_EQ(WEXITSTATUS(status), 5);
}

TEST_F(DialogProcessOnLinux, WhatIsNoProgramCannotBeStarted) {
    EXPECT_EQ(platform::DialogProcess::Start(m_prefix.Below("not-there")), nullptr);
    EXPECT_EQ(platform::DialogProcess::Start(m_prefix.Path()), nullptr);
    EXPECT_EQ(platform::DialogProcess::Start(""), nullptr);
}

}  // namespace
