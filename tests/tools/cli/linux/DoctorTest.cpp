// What shows dialogs in this session, and the store's files.

#include <filesystem>

#include "tools/cli/CliFixture.h"

namespace {

using DoctorOnLinux = CliTest;

TEST_F(DoctorOnLinux, WithoutADisplayAndATerminalNothingShowsDialogs) {
    const std::string told = Tesmark({"doctor"}).out;
    EXPECT_NE(told.find("none without a display or a terminal"), std::string::npos) << told;
}

TEST_F(DoctorOnLinux, TheConfiguredProgramShowsDialogs) {
    ASSERT_EQ(Tesmark({"config", "set", "DialogProgram", kTesmark}).exitCode, 0);
    const std::string told = Tesmark({"doctor"}).out;
    const auto line = told.find("dialogs");
    ASSERT_NE(line, std::string::npos) << told;
    EXPECT_EQ(told.find(kTesmark, line), told.find_first_not_of(' ', line + 7)) << told;
}

TEST_F(DoctorOnLinux, AConfiguredProgramThatIsNotThereIsAProblem) {
    ASSERT_EQ(Tesmark({"config", "set", "DialogProgram", "/not/there"}).exitCode, 0);
    const auto outcome = Tesmark({"doctor"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.out.find("The dialog program is not there: /not/there."), std::string::npos)
        << outcome.out;
    EXPECT_NE(outcome.out.find("tesmark config unset DialogProgram"), std::string::npos);
}

class StoreDoctorOnLinux : public CliTest {
protected:
    // What is wrong with the store, with "|" behind each; the rest of `doctor` tells what follows
    // of it.
    std::string Faults() const {
        std::string faults;
        const Json::Value findings = Json({"doctor"})["findings"];
        for (const Json::Value& finding : findings) {
            if (finding["subject"] != "store" || finding["ok"].asBool()) continue;
            faults += finding["text"].asString() + "|";
        }
        return faults;
    }

    std::string m_machine = InPrefix("machine.reg");
};

TEST_F(StoreDoctorOnLinux, AStoreThatIsInOrderHasNoFaults) {
    ASSERT_EQ(Tesmark({"config", "set", "InstallPath", "/opt/velmora"}).exitCode, 0);
    EXPECT_EQ(Faults(), "");
    WriteFile(m_machine,
              "\xEF\xBB\xBFWindows Registry Editor Version 5.00\r\n\r\n; by hand\r\n"
              "[HKLM\\software\\Velmora\\fenmoor]  ; ours\r\n  \"appid\"=hex(1):41,\\\r\n  00\r\n"
              "@=\"\"\r\n");
    EXPECT_EQ(Faults(), "");
    WriteFile(m_machine, "");
    EXPECT_EQ(Faults(), "");
}

TEST_F(StoreDoctorOnLinux, AStoreThatIsRubbishIsAProblem) {
    const std::string skipped = " of the settings' file " + m_machine +
                                " is neither a key nor a value that can be read; such lines are "
                                "skipped.|";
    WriteFile(m_machine, "hello world\n");
    EXPECT_EQ(Faults(), "Line 1" + skipped);
    WriteFile(m_machine, std::string("\x7F"
                                     "ELF\0\n\xFF",
                                     7));
    EXPECT_EQ(Faults(), "Line 1" + skipped);
    WriteFile(m_machine, "[HKLM\\software]\n\"a\"=dword:1\nb=dword:1\n");
    EXPECT_EQ(Faults(), "Line 3" + skipped);
    WriteFile(m_machine, "[HKLM\\software]\n\"a\"=\"rubbish\n");
    EXPECT_EQ(Faults(), "Line 2" + skipped);
    EXPECT_EQ(Tesmark({"doctor"}).exitCode, 3);
    WriteFile(InPrefix("user.reg"), "[HKCU\n");
    EXPECT_NE(Faults().find("Line 1 of the settings' file " + InPrefix("user.reg")),
              std::string::npos)
        << Faults();
}

TEST_F(StoreDoctorOnLinux, AStoreThatCannotBeReadIsAProblem) {
    WriteFile(m_machine, std::string("\xFF\xFE[\0", 4));
    EXPECT_EQ(Faults(),
              "The settings' file " + m_machine +
                  " can't be read: there is no right to, or it is UTF-16 and not UTF-8.|");
    std::filesystem::remove(m_machine);
    std::filesystem::create_directory(m_machine);
    EXPECT_EQ(Faults(), "A folder stands in the place of the settings' file " + m_machine + ".|");
}

}  // namespace
