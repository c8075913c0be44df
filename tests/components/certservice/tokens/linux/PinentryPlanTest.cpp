#include "components/certservice/pinentry/linux/PinentryPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "components/certservice/tokens/TokenFixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PinentryPlanTestOnLinux : public testing::Test {
protected:
    void SetUp() override { m_session.searchPath = Folder("first") + "::" + Folder("second"); }

    std::string Folder(const std::string& name) const { return m_prefix.Path() + "/" + name; }
    std::string Install(const std::string& folder, const std::string& name) const {
        std::filesystem::create_directories(Folder(folder));
        const std::string path = Folder(folder) + "/" + name;
        std::ofstream(path) << "#!/bin/sh\n";
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        return path;
    }
    std::string Chosen() const {
        const std::optional<PinentryPlan> plan = PlanPinentry(m_session);
        return plan ? plan->program : std::string();
    }

    TemporaryPrefix m_prefix;
    PinentrySession m_session;
};

TEST_F(PinentryPlanTestOnLinux, WithoutAnyProgramThereIsNoPlan) {
    m_session.display = true;
    EXPECT_THAT(Chosen(), IsEmpty());
    m_session.searchPath.clear();
    EXPECT_THAT(Chosen(), IsEmpty());
}

TEST_F(PinentryPlanTestOnLinux, TheNameWithoutSuffixComesFirst) {
    const std::string tty = Install("first", "pinentry-tty");
    m_session.terminal = "/dev/pts/1";
    EXPECT_EQ(Chosen(), tty);
    const std::string plain = Install("second", "pinentry");
    EXPECT_EQ(Chosen(), plain);
}

TEST_F(PinentryPlanTestOnLinux, AProgramForATerminalNeedsOne) {
    const std::string tty = Install("first", "pinentry-tty");
    m_session.display = true;
    EXPECT_THAT(Chosen(), IsEmpty());
    m_session.terminal = "/dev/pts/1";
    EXPECT_EQ(Chosen(), tty);
}

TEST_F(PinentryPlanTestOnLinux, ALinkIsJudgedByWhatItLeadsTo) {
    const std::string link = Folder("first") + "/pinentry";
    std::filesystem::create_symlink(Install("first", "pinentry-curses"), link);
    const std::string qt = Install("second", "pinentry-qt");
    m_session.display = true;
    EXPECT_EQ(Chosen(), qt);
    m_session.terminal = "/dev/pts/1";
    EXPECT_EQ(Chosen(), link);
}

TEST_F(PinentryPlanTestOnLinux, AProgramForADisplayNeedsOneOrATerminal) {
    const std::string gnome = Install("first", "pinentry-gnome3");
    EXPECT_THAT(Chosen(), IsEmpty());
    m_session.display = true;
    EXPECT_EQ(Chosen(), gnome);
    m_session.display = false;
    m_session.terminal = "/dev/pts/1";
    EXPECT_EQ(Chosen(), gnome);
}

TEST_F(PinentryPlanTestOnLinux, TheConfiguredProgramIsTheOnlyOne) {
    Install("first", "pinentry");
    m_session.configured = Install("elsewhere", "my-own");
    EXPECT_EQ(Chosen(), m_session.configured);
    m_session.configured = Folder("elsewhere") + "/not-there";
    EXPECT_THAT(Chosen(), IsEmpty());
    m_session.configured = Install("elsewhere", "pinentry-tty");
    EXPECT_THAT(Chosen(), IsEmpty());
}

TEST_F(PinentryPlanTestOnLinux, AFileThatCannotBeExecutedIsNoProgram) {
    const std::string path = Install("first", "pinentry");
    std::filesystem::permissions(path, std::filesystem::perms::owner_read);
    std::filesystem::create_directories(Folder("second") + "/pinentry");
    EXPECT_THAT(Chosen(), IsEmpty());
}

TEST_F(PinentryPlanTestOnLinux, TheProgramLearnsTerminalAndLocale) {
    m_session.configured = Install("elsewhere", "my-own");
    EXPECT_THAT(PlanPinentry(m_session)->options, IsEmpty());
    m_session.terminalType = "xterm";
    m_session.locale = "zh_CN.UTF-8";
    EXPECT_THAT(PlanPinentry(m_session)->options,
                ElementsAre("lc-ctype=zh_CN.UTF-8", "lc-messages=zh_CN.UTF-8"));
    m_session.terminal = "/dev/pts/1";
    EXPECT_THAT(PlanPinentry(m_session)->options,
                ElementsAre("ttyname=/dev/pts/1", "ttytype=xterm", "lc-ctype=zh_CN.UTF-8",
                            "lc-messages=zh_CN.UTF-8"));
}

TEST_F(PinentryPlanTestOnLinux, TheSessionIsReadFromTheStoreAndTheEnvironment) {
    SetServicePath("PinentryProgram", "/opt/pin");
    setenv("DISPLAY", ":7", 1);
    setenv("LC_ALL", "zh_CN.GB18030", 1);
    const PinentrySession session = CurrentPinentrySession();
    unsetenv("DISPLAY");
    unsetenv("LC_ALL");
    EXPECT_EQ(session.configured, "/opt/pin");
    EXPECT_TRUE(session.display);
    EXPECT_EQ(session.locale, "zh_CN.GB18030");
}

}  // namespace
