#include "components/certservice/pinentry/linux/PinentryProcess.h"

#include <errno.h>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pinentry/PinEntry.h"
#include "components/certservice/tokens/TokenFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

constexpr PinentryLimits kImpatient{.command = 200, .user = 200, .exit = 200};
// For a program that answers: no test waits that long.
constexpr PinentryLimits kPatient{.command = 60'000, .user = 60'000, .exit = 60'000};

std::size_t OpenDescriptors() {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        count += !entry.path().empty();
    return count;
}

// The host must be left as it was found: no child, no descriptor, SIGPIPE as it was.
class PinentryProcessTestOnLinux : public testing::Test {
protected:
    void SetUp() override {
        m_log = m_prefix.Path() + "/pinentry.log";
        setenv("PINENTRY_LOG", m_log.c_str(), 1);
        m_descriptors = OpenDescriptors();
    }
    void TearDown() override {
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
        EXPECT_EQ(errno, ECHILD);
        EXPECT_EQ(OpenDescriptors(), m_descriptors);
        struct sigaction pipe {};
        sigaction(SIGPIPE, nullptr, &pipe);
        EXPECT_EQ(pipe.sa_handler, SIG_DFL);
        unsetenv("PINENTRY_LOG");
        unsetenv("PINENTRY_SCRIPT");
    }

    int Ask(const char* script, const PinentryLimits& limits = kPatient) {
        setenv("PINENTRY_SCRIPT", script, 1);
        const auto process = PinentryProcess::Start(SCRIPTED_PINENTRY, limits);
        if (!process) return kServicePinUnavailable;
        return AskForPin(*process, {}, {"key", -1, ""}, m_pin);
    }
    std::vector<std::string> Log() const {
        std::vector<std::string> lines;
        std::ifstream file(m_log, std::ios::binary);
        for (std::string line; std::getline(file, line);) lines.push_back(line);
        return lines;
    }

    TemporaryPrefix m_prefix;
    std::string m_log;
    std::size_t m_descriptors = 0;
    std::string m_pin = "untouched";
};

TEST_F(PinentryProcessTestOnLinux, ThePinComesUnescaped) {
    EXPECT_EQ(Ask("answer"), kServiceOk);
    EXPECT_EQ(m_pin, "12%34\n56");
}

TEST_F(PinentryProcessTestOnLinux, TheProgramGetsThreeDescriptorsAndFreshSignals) {
    const int leak = open("/dev/null", O_RDONLY);
    ASSERT_GT(leak, 2);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    EXPECT_EQ(Ask("answer"), kServiceOk);
    sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
    close(leak);
    ASSERT_FALSE(Log().empty());
    EXPECT_EQ(Log()[0], "descriptors 0 1 2 3");
}

TEST_F(PinentryProcessTestOnLinux, TheProgramIsToldGoodbye) {
    EXPECT_EQ(Ask("answer"), kServiceOk);
    EXPECT_THAT(Log(), ElementsAre(StartsWith("descriptors"), StartsWith("SETTIMEOUT"),
                                   StartsWith("SETTITLE"), StartsWith("SETDESC"),
                                   StartsWith("SETPROMPT"), "GETPIN", "BYE"));
}

TEST_F(PinentryProcessTestOnLinux, AnEmptyPinIsAnAnswer) {
    EXPECT_EQ(Ask("empty"), kServiceOk);
    EXPECT_THAT(m_pin, IsEmpty());
}

TEST_F(PinentryProcessTestOnLinux, CancellingIsTold) {
    EXPECT_EQ(Ask("cancel"), kServicePinCancelled);
    EXPECT_EQ(m_pin, "untouched");
}

TEST_F(PinentryProcessTestOnLinux, ATimeOutOfTheProgramIsNoCancelling) {
    EXPECT_EQ(Ask("timeout"), kServicePinUnavailable);
}

TEST_F(PinentryProcessTestOnLinux, AProgramThatKnowsOnlyTheQuestionServes) {
    EXPECT_EQ(Ask("unwilling"), kServiceOk);
    EXPECT_EQ(m_pin, "12%34\n56");
}

TEST_F(PinentryProcessTestOnLinux, AProgramThatDiesIsUnavailable) {
    EXPECT_EQ(Ask("die"), kServicePinUnavailable);
    EXPECT_EQ(Ask("die at once"), kServicePinUnavailable);
    EXPECT_EQ(m_pin, "untouched");
}

TEST_F(PinentryProcessTestOnLinux, AProgramThatTalksRubbishIsUnavailable) {
    EXPECT_EQ(Ask("rubbish"), kServicePinUnavailable);
    EXPECT_EQ(Ask("wrong greeting"), kServicePinUnavailable);
    EXPECT_EQ(Ask("flood"), kServicePinUnavailable);
    EXPECT_EQ(m_pin, "untouched");
}

TEST_F(PinentryProcessTestOnLinux, AProgramThatFallsSilentIsKilledInTime) {
    EXPECT_EQ(Ask("no greeting", kImpatient), kServicePinUnavailable);
    EXPECT_EQ(Ask("silence", kImpatient), kServicePinUnavailable);
}

TEST_F(PinentryProcessTestOnLinux, AProgramThatStaysAfterTheGoodbyeIsKilledAndItsAnswerHolds) {
    EXPECT_EQ(Ask("stay", {.command = 60'000, .user = 60'000, .exit = 200}), kServiceOk);
    EXPECT_EQ(m_pin, "12%34\n56");
}

TEST_F(PinentryProcessTestOnLinux, WhatIsNoProgramCannotBeStarted) {
    EXPECT_EQ(PinentryProcess::Start(m_prefix.Path() + "/not-there"), nullptr);
    EXPECT_EQ(PinentryProcess::Start(m_prefix.Path()), nullptr);
}

TEST_F(PinentryProcessTestOnLinux, TheConfiguredProgramIsAsked) {
    SetServicePath("PinentryProgram", SCRIPTED_PINENTRY);
    setenv("PINENTRY_SCRIPT", "answer", 1);
    EXPECT_EQ(MakePinEntry()->Ask("key", 3, "", m_pin), kServiceOk);
    EXPECT_EQ(m_pin, "12%34\n56");
}

TEST_F(PinentryProcessTestOnLinux, AConfiguredProgramThatIsNotThereIsUnavailable) {
    SetServicePath("PinentryProgram", m_prefix.Path() + "/not-there");
    EXPECT_EQ(MakePinEntry()->Ask("key", 3, "", m_pin), kServicePinUnavailable);
    EXPECT_EQ(m_pin, "untouched");
}

}  // namespace
