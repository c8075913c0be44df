// The program's command line.

#include <gmock/gmock.h>

#include <fstream>

#include "support/Program.h"
#include "tests/tools/sealserver/StoreFixture.h"
#include "tools/sealserver/Password.h"

namespace {

using testing::HasSubstr;
using testing::StartsWith;

class CommandsTest : public StoreFixture {
protected:
    ProgramOutcome Run(std::vector<std::string> arguments, const std::string& input = "") {
        arguments.insert(arguments.begin(), SEALSERVER_PROGRAM);
        arguments.insert(arguments.begin() + 2, {"--database", Path()});
        ProgramOptions options;
        options.input = input;
        options.hasTerminal = false;
        return RunProgram(arguments, options);
    }
    std::string Written(const std::string& name, const std::string& content) const {
        std::ofstream(m_folder.Below(name), std::ios::binary) << content;
        return m_folder.Below(name);
    }
};

TEST_F(CommandsTest, ASealIsAddedListedSuspendedResumedAndRemoved) {
    const ProgramOutcome added =
        Run({"add", "--certificate-file", Written("a.cer", Signer().certificate), "--seal",
             Written("seal", NationalSeal())});
    EXPECT_EQ(added.out, "1\n") << added.error;
    const std::string rest = "\t50010001234\t测试章\tGB/T 38540-2020\t1234ABCD\tCN=Signer\n";
    EXPECT_EQ(Run({"list"}).out, "1\tin use" + rest);
    EXPECT_EQ(Run({"suspend", "1"}).exitCode, 0);
    EXPECT_EQ(Run({"list"}).out, "1\tsuspended" + rest);
    EXPECT_EQ(Run({"resume", "1"}).exitCode, 0);
    EXPECT_EQ(Run({"list"}).out, "1\tin use" + rest);
    EXPECT_EQ(Run({"remove", "1"}).exitCode, 0);
    EXPECT_EQ(m_store.Seals(AddSigner()).size(), 0u);
}

TEST_F(CommandsTest, ACertificateWithoutSealsIsListedToo) {
    EXPECT_EQ(Run({"list"}).out, "");
    EXPECT_EQ(Run({"add", "--serial", "0a", "--name", "CN=x"}).exitCode, 0);
    EXPECT_EQ(Run({"list"}).out, "-\tno seals\t-\t-\t-\t0a\tCN=x\n");
    AddSeal({EsSeal(), "7", "T"});
    EXPECT_EQ(Run({"list"}).out,
              "-\tno seals\t-\t-\t-\t0a\tCN=x\n1\tin use\t7\tT\tES\t1234ABCD\tCN=Signer\n");
}

TEST_F(CommandsTest, NumberAndTitleMayBeGiven) {
    EXPECT_EQ(Run({"add", "--serial", "0a", "--name", "CN=x", "--seal", Written("seal", EsSeal()),
                   "--number", "7001", "--title", "T"})
                  .out,
              "1\n");
    const auto certificate = m_store.FindCertificate("A", "CN=x");
    ASSERT_TRUE(certificate);
    EXPECT_EQ(m_store.FindSeal(certificate->id, "7001")->name, "T");
}

TEST_F(CommandsTest, WhatCannotBeDoneIsTold) {
    const ProgramOutcome absent = Run({"add", "--serial", "1", "--seal", m_folder.Below("absent")});
    EXPECT_EQ(absent.exitCode, 1);
    EXPECT_THAT(absent.error, StartsWith("sealserver: The file can't be read"));
    EXPECT_EQ(Run({"suspend", "1"}).error, "sealserver: There is no seal of that id.\n");
    EXPECT_EQ(Run({"remove", "1"}).exitCode, 1);
    EXPECT_NE(Run({"suspend", "x"}).exitCode, 0);
    EXPECT_NE(RunProgram({SEALSERVER_PROGRAM}).exitCode, 0);
    EXPECT_NE(RunProgram({SEALSERVER_PROGRAM, "serve"}).exitCode, 0);
}

TEST_F(CommandsTest, ASealOfOtherSignersIsAddedWithAWarning) {
    const std::string seal = Written("seal", NationalSeal());
    const ProgramOutcome other =
        Run({"add", "--certificate-file", Written("b.cer", Maker().certificate), "--seal", seal});
    EXPECT_EQ(other.exitCode, 0);
    EXPECT_EQ(other.out, "1\n");
    EXPECT_EQ(other.error,
              "sealserver: warning: The seal names other certificates than this one, so no "
              "signature can be made with it.\n");
    const ProgramOutcome own =
        Run({"add", "--certificate-file", Written("a.cer", Signer().certificate), "--seal", seal});
    EXPECT_EQ(own.out, "2\n");
    EXPECT_EQ(own.error, "");
}

TEST_F(CommandsTest, AnEsFileThatIsThereIsRefused) {
    const std::vector<std::string> add = {
        "add", "--serial", "0a", "--name", "CN=x", "--seal", Written("seal", EsSeal())};
    EXPECT_EQ(Run(add).out, "1\n");
    const ProgramOutcome again = Run(add);
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_EQ(again.out, "");
    EXPECT_THAT(again.error,
                StartsWith("sealserver: The certificate has this seal file already, under the "
                           "number 1."));
}

TEST_F(CommandsTest, AMistypedDatabaseIsNotMade) {
    const std::string absent = m_folder.Below("absent.db");
    for (const char* const command : {"list", "suspend", "resume", "remove"}) {
        std::vector<std::string> arguments{SEALSERVER_PROGRAM, command, "--database", absent};
        if (command != std::string("list")) arguments.push_back("1");
        const ProgramOutcome outcome = RunProgram(arguments);
        EXPECT_EQ(outcome.exitCode, 1) << command;
        EXPECT_EQ(outcome.error, "sealserver: There is no file " + absent + ".\n") << command;
        EXPECT_FALSE(std::ifstream(absent).good()) << command;
    }
}

TEST_F(CommandsTest, ThePasswordIsALineOfInput) {
    EXPECT_EQ(Run({"password"}, "correct horse\nmore").exitCode, 0);
    EXPECT_TRUE(PasswordMatches("correct horse", m_store.Setting("password")));
    EXPECT_EQ(Run({"password"}, "short\n").exitCode, 1);
    EXPECT_EQ(Run({"password"}, "").exitCode, 1);
    EXPECT_TRUE(PasswordMatches("correct horse", m_store.Setting("password")));
}

TEST_F(CommandsTest, NothingIsOpenToTheNetworkUnasked) {
    const ProgramOutcome open = Run({"serve", "--address", "0.0.0.0"});
    EXPECT_EQ(open.exitCode, 1);
    EXPECT_THAT(open.error, HasSubstr("--plain"));
    EXPECT_EQ(open.out, "");
    EXPECT_EQ(Run({"serve", "--certificate", "x"}).exitCode, 1);
    EXPECT_NE(Run({"serve", "--port", "65536"}).exitCode, 0);
}

}  // namespace
