// `tesmark config` and `doctor`, and what every command has: help, version, usage errors.

#include <filesystem>

#include "CliFixture.h"
#include "components/certservice/Places.h"
#include "foundation/Registry.h"
#include "platform/Files.h"
#include "platform/Module.h"
#include "platform/RegistryStore.h"

namespace {

class ConfigTest : public CliTest {
protected:
    // The raw bytes of a value; empty if it isn't there.
    static std::string Stored(platform::RegistryRoot root, const char* path, const char* name) {
        const platform::RegistryKey key =
            platform::OpenRegistryKey(root, path, platform::RegistryAccess::Read64);
        std::string bytes(256, '\0');
        std::size_t size = bytes.size();
        if (!key || !platform::QueryRegistryValue(key, name, bytes.data(), &size)) size = 0;
        if (key) platform::CloseRegistryKey(key);
        return bytes.substr(0, size);
    }
};

TEST_F(ConfigTest, ANumberGoesRoundAndStandsInTheStore) {
    ASSERT_EQ(Tesmark({"config", "set", "bVerifyCRL", "1"}).exitCode, 0);
    EXPECT_EQ(Tesmark({"config", "get", "bVerifyCRL"}).out, "1\n");
    EXPECT_EQ(Stored(platform::RegistryRoot::LocalMachine, kSettingsKey, "bVerifyCRL"),
              std::string("\1\0\0\0", 4));
}

TEST_F(ConfigTest, NamesCompareWithoutRegardToCase) {
    ASSERT_EQ(Tesmark({"config", "set", "BVERIFYcrl", "1"}).exitCode, 0);
    EXPECT_EQ(Tesmark({"config", "get", "bVerifyCRL"}).out, "1\n");
}

TEST_F(ConfigTest, AChineseTextGoesRound) {
    const std::string text = reinterpret_cast<const char*>(u8"应用");
    ASSERT_EQ(Tesmark({"config", "set", "appid", text}).exitCode, 0);
    EXPECT_EQ(Json({"config", "get", "appid"})["value"].asString(), text);
}

TEST_F(ConfigTest, APathKeepsItsBytes) {
    const std::string path = InPrefix(reinterpret_cast<const char*>(u8"信任 folder"));
    ASSERT_EQ(Tesmark({"config", "set", "TrustFolder", path}).exitCode, 0);
    EXPECT_EQ(Tesmark({"config", "get", "TrustFolder"}).out, path + "\n");
}

TEST_F(ConfigTest, ARelativePathIsRefusedForEverySetting) {
    std::size_t paths = 0;
    const Json::Value settings = Json({"config", "get"})["settings"];
    for (const Json::Value& setting : settings) {
        if (setting["type"] != "path") continue;
        const std::string name = setting["name"].asString();
        const auto outcome = Tesmark({"config", "set", name, "rel/x"});
        EXPECT_EQ(outcome.exitCode, 2) << name;
        EXPECT_NE(outcome.error.find("absolute"), std::string::npos) << outcome.error;
        EXPECT_NE(outcome.error.find("rel/x"), std::string::npos) << outcome.error;
        EXPECT_EQ(Json({"config", "get", name})["value"], setting["value"]) << name;
        ++paths;
    }
    EXPECT_GE(paths, 11u);
    EXPECT_EQ(Tesmark({"config", "set", "KeyFolder", "~/keys"}).exitCode, 2);
}

TEST_F(ConfigTest, AFolderIsNoFileAndAFileNoFolder) {
    const std::string folder = InPrefix("folder");
    const std::string file = InPrefix("file");
    ASSERT_TRUE(std::filesystem::create_directory(folder));
    WriteFile(file, "x");
    const std::string list = InPrefix("module.so") + ";" + folder;
    const struct {
        std::string name, value, told;
    } cases[] = {{"DialogProgram", folder, folder},
                 {"ServiceCaFile", folder, folder},
                 {"Pkcs11Modules", list, folder},
                 {"KeyFolder", file, file},
                 {"InstallPath", file, file}};
    for (const auto& [name, value, told] : cases) {
        const Json::Value before = Json({"config", "get", name})["value"];
        const auto outcome = Tesmark({"config", "set", name, value});
        EXPECT_EQ(outcome.exitCode, 4) << name;
        EXPECT_NE(outcome.error.find(told + "."), std::string::npos) << outcome.error;
        EXPECT_EQ(Json({"config", "get", name})["value"], before) << name;
    }
}

TEST_F(ConfigTest, WhatIsNotThereYetMayBeSet) {
    const std::string none = InPrefix("none");
    for (const char* name : {"DialogProgram", "KeyFolder", "Pkcs11Modules"}) {
        EXPECT_EQ(Tesmark({"config", "set", name, none}).exitCode, 0) << name;
        EXPECT_EQ(Tesmark({"config", "get", name}).out, none + "\n");
    }
}

TEST_F(ConfigTest, EachPathOfAListIsAbsolute) {
    const std::string one = InPrefix("one.so");
    EXPECT_EQ(Tesmark({"config", "set", "Pkcs11Modules", one + ";two.so"}).exitCode, 2);
    EXPECT_EQ(Tesmark({"config", "set", "Pkcs11Modules", one + ";" + InPrefix("two.so")}).exitCode,
              0);
}

TEST_F(ConfigTest, TheInstallationFolderIsTheUsersOwn) {
    const std::string path = InPrefix("velmora");
    ASSERT_EQ(Tesmark({"config", "set", "InstallPath", path}).exitCode, 0);
    EXPECT_EQ(Stored(platform::RegistryRoot::CurrentUser, "Software\\Velmora\\InstallPath",
                     "InstallPath"),
              path + '\0');
    EXPECT_EQ(Json({"config", "get", "InstallPath"})["scope"].asString(), "user");
}

TEST_F(ConfigTest, UnsetBringsTheDefaultBack) {
    ASSERT_EQ(Tesmark({"config", "set", "bSealPosition", "1"}).exitCode, 0);
    ASSERT_EQ(Tesmark({"config", "unset", "bSealPosition"}).exitCode, 0);
    const Json::Value setting = Json({"config", "get", "bSealPosition"});
    EXPECT_TRUE(setting["value"].isNull());
    EXPECT_EQ(setting["default"].asString(), "0");
}

TEST_F(ConfigTest, AnUnknownNameIsAnErrorThatListsTheKnownOnes) {
    const auto outcome = Tesmark({"config", "get", "bNothing"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.error.find("bSignWithTimeStamp"), std::string::npos);
    EXPECT_NE(outcome.error.find("TrustFolder"), std::string::npos);
}

TEST_F(ConfigTest, ATextForANumberAndATooLongTextAreRefused) {
    EXPECT_EQ(Tesmark({"config", "set", "bVerifyCRL", "yes"}).exitCode, 2);
    EXPECT_EQ(Tesmark({"config", "set", "sWSURL", std::string(199, 'a')}).exitCode, 0);
    EXPECT_EQ(Tesmark({"config", "set", "sWSURL", std::string(200, 'a')}).exitCode, 2);
    EXPECT_EQ(Tesmark({"config", "get", "sWSURL"}).out, std::string(199, 'a') + "\n");
}

TEST_F(ConfigTest, AValueThatStandsForNoSourceOfSealsIsRefused) {
    for (const char* value : {"0", "1", "2", "3", "4"}) {
        EXPECT_EQ(Tesmark({"config", "set", "bSealPosition", value}).exitCode, 0) << value;
    }
    const auto outcome = Tesmark({"config", "set", "bSealPosition", "5"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.error.find("bSealPosition is a number from 0 to 4: \"5\" is none."),
              std::string::npos)
        << outcome.error;
    EXPECT_EQ(Tesmark({"config", "get", "bSealPosition"}).out, "4\n");
}

TEST_F(ConfigTest, AllSettingsAreShownWithTheirDefaults) {
    const Json::Value settings = Json({"config", "get"})["settings"];
    EXPECT_GE(settings.size(), 12u);
    for (const Json::Value& setting : settings) {
        EXPECT_FALSE(setting["meaning"].asString().empty()) << setting;
    }
}

using DoctorBareTest = BareCliTest;

TEST_F(DoctorBareTest, ABarePrefixIsToldWhatIsMissing) {
    const auto outcome = Tesmark({"doctor"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.out.find("WRONG  certificate service"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("tesmark config set CertService"), std::string::npos);
    EXPECT_NE(outcome.out.find("WRONG  trust folder"), std::string::npos) << outcome.out;
}

TEST_F(DoctorBareTest, EveryOtherCommandNamesTheMissingServiceToo) {
    const auto outcome = Tesmark({"list"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.error.find("-3021"), std::string::npos) << outcome.error;
}

class DoctorTest : public CliTest {
protected:
    // Whether a program asks for PINs is the machine's affair.
    std::size_t Problems() const {
        std::size_t problems = 0;
        const Json::Value findings = Json({"doctor"})["findings"];
        for (const Json::Value& finding : findings) {
            if (!finding["ok"].asBool() && finding["subject"] != "PIN entry") ++problems;
        }
        return problems;
    }
    std::string Text() const { return Tesmark({"doctor"}).out; }
};

TEST_F(DoctorTest, AKeyWithASealLeavesNothingToMend) {
    MakeKey("alice", "sm2");
    MakeSeal("alice", "gb2020", "alice");
    EXPECT_EQ(Problems(), 0u) << Text();
}

TEST_F(DoctorTest, ALockedKeyIsNamed) {
    MakeKey("alice", "sm2");
    WriteFile(InPrefix("f"), "f");
    for (int i = 0; i < 6; ++i) Tesmark({"sign", InPrefix("f"), "--pin", "000000"});
    EXPECT_EQ(Problems(), 1u);
    EXPECT_NE(Text().find("DevKeys/alice: the key is locked"), std::string::npos) << Text();
}

TEST_F(DoctorTest, ADamagedKeyIsNamed) {
    MakeKey("alice", "sm2");
    MakeKey("bob", "sm2");
    for (const auto& entry : std::filesystem::directory_iterator(InKeys("bob"))) {
        if (entry.is_regular_file()) WriteFile(entry.path().string(), "rubbish");
    }
    EXPECT_GE(Problems(), 1u);
    EXPECT_NE(Text().find("DevKeys/bob"), std::string::npos) << Text();
}

TEST_F(DoctorTest, ADamagedSealIsNamed) {
    MakeKey("alice", "sm2");
    MakeSeal("alice", "gb2020", "alice");
    WriteFile(InKeys("alice/files/GBESEAL"), "rubbish");
    EXPECT_EQ(Problems(), 1u) << Text();
    EXPECT_NE(Text().find("GBESEAL in DevKeys/alice: the seal is damaged"), std::string::npos)
        << Text();
}

TEST_F(DoctorTest, ACertificateThatNobodyTrustsIsNamed) {
    MakeKey("alice", "sm2");
    std::filesystem::remove_all(TrustFolderPath());
    EXPECT_NE(Text().find("DevKeys/alice: not trusted on this machine"), std::string::npos)
        << Text();
}

TEST_F(DoctorTest, ASettingThatIsNoAbsolutePathIsNamed) {
    MakeKey("alice", "sm2");
    m_prefix.RegisterInstallation("rel");
    EXPECT_EQ(Problems(), 1u) << Text();
    EXPECT_NE(Text().find("InstallPath is no absolute path: rel"), std::string::npos) << Text();
    EXPECT_NE(Text().find("config set InstallPath ABSOLUTE_PATH"), std::string::npos) << Text();
}

TEST_F(DoctorTest, ServicesFilesThatAreNoLibrariesAreNamed) {
    const std::string file = InPrefix(platform::ModuleFileName("KVLAppCOM"));
    WriteFile(file, "no library");
    m_prefix.RegisterCertService(file);
    const auto outcome = Tesmark({"doctor"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_NE(outcome.out.find("can't be loaded"), std::string::npos) << outcome.out;
}

TEST_F(DoctorTest, ALibraryThatIsNoServiceIsNamedAndNeverCalled) {
    m_prefix.RegisterCertService(CLI_TIME_STAMP_ENGINE);
    const auto outcome = Tesmark({"doctor"});
    EXPECT_EQ(outcome.exitCode, 3) << outcome.error;
    EXPECT_NE(outcome.out.find("is no certificate service"), std::string::npos) << outcome.out;
    WriteFile(InPrefix("f"), "f");
    for (const std::vector<std::string>& line : std::vector<std::vector<std::string>>{
             {"list"}, {"hash", InPrefix("f")}, {"sign", InPrefix("f")}, {"logout"}}) {
        const auto refused = Tesmark(line);
        EXPECT_EQ(refused.exitCode, 3) << line.front();
        EXPECT_NE(refused.error.find("is no certificate service"), std::string::npos)
            << refused.error;
    }
}

TEST_F(DoctorTest, ALogThatCannotBeWrittenIsAProblem) {
    std::string folder = m_prefix.LogFolder();
    folder.pop_back();
    const std::string log = folder + platform::PathSeparator() + "Fenmoor.log";
    std::filesystem::remove(log);
    std::filesystem::create_directories(log);
    EXPECT_NE(Text().find("The log can't be written: " + log + " (it is a folder)."),
              std::string::npos)
        << Text();
    std::filesystem::remove_all(folder);
    WriteFile(folder, "in the folder's place");
    // The program's log may be where it runs then.
    ProgramOptions inPrefix;
    inPrefix.folder = m_prefix.Path();
    const std::string told = Tesmark({"doctor"}, inPrefix).out;
    EXPECT_NE(told.find("The log can't be written: " + log + " (" + folder +
                        " is no folder; look for it in the working folder)."),
              std::string::npos)
        << told;
    std::filesystem::remove(folder);
    EXPECT_EQ(Text().find("The log can't be written"), std::string::npos) << Text();
}

TEST_F(ConfigTest, OnlyACertificateServiceIsRegisteredAsOne) {
    const std::string before = Tesmark({"config", "get", "CertService"}).out;
    WriteFile(InPrefix("text"), "no library");
    for (const std::string& file :
         {std::string(CLI_TIME_STAMP_ENGINE), InPrefix("text"), InPrefix("none")}) {
        EXPECT_EQ(Tesmark({"config", "set", "CertService", file}).exitCode, 4) << file;
    }
    const auto folder = Tesmark({"config", "set", "CertService", m_prefix.Path()});
    EXPECT_EQ(folder.exitCode, 4);
    EXPECT_NE(folder.error.find("this is a folder"), std::string::npos) << folder.error;
    const auto relative =
        Tesmark({"config", "set", "CertService", platform::ModuleFileName("KVLAppCOM")});
    EXPECT_EQ(relative.exitCode, 2);
    EXPECT_NE(relative.error.find("must be absolute"), std::string::npos) << relative.error;
    EXPECT_EQ(Tesmark({"config", "get", "CertService"}).out, before);
    const std::string service = before.substr(0, before.find_first_of("\r\n"));
    EXPECT_EQ(Tesmark({"config", "set", "CertService", service}).exitCode, 0);
}

class HelpTest : public CliTest {};

TEST_F(HelpTest, EveryLevelTellsExamples) {
    const std::vector<std::vector<std::string>> levels = {
        {},        {"key"},    {"key", "new"},    {"key", "list"},   {"key", "import"},
        {"seal"},  {"list"},   {"seal", "new"},   {"stamp"},         {"sign"},
        {"hash"},  {"config"}, {"config", "get"}, {"config", "set"}, {"config", "unset"},
        {"doctor"}};
    for (std::vector<std::string> level : levels) {
        level.emplace_back("--help");
        const auto outcome = Tesmark(level);
        EXPECT_EQ(outcome.exitCode, 0) << level.front();
        EXPECT_NE(outcome.out.find("Examples:\n  "), std::string::npos) << outcome.out;
        EXPECT_EQ(outcome.error, "");
    }
}

TEST_F(HelpTest, TheVersionIsTold) {
    const auto outcome = Tesmark({"--version"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_TRUE(outcome.out.starts_with("tesmark ")) << outcome.out;
}

TEST_F(HelpTest, ACommandLineThatCannotBeUnderstoodEndsWithTwo) {
    for (const std::vector<std::string>& line : std::vector<std::vector<std::string>>{
             {}, {"frobnicate"}, {"stamp"}, {"stamp", "a.pdf"}, {"list", "--nothing"}}) {
        const auto outcome = Tesmark(line);
        EXPECT_EQ(outcome.exitCode, 2);
        EXPECT_TRUE(outcome.error.starts_with("tesmark: ")) << outcome.error;
    }
}

TEST_F(HelpTest, AWordThatIsNoCommandIsNamedWithTheNearestOne) {
    const auto outcome = Tesmark({"stmp", "a.pdf"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.error.find("No command is called \"tesmark stmp\"."), std::string::npos)
        << outcome.error;
    EXPECT_NE(outcome.error.find("is \"tesmark stamp\" meant?"), std::string::npos);
    const auto below = Tesmark({"key", "nw"});
    EXPECT_NE(below.error.find("No command is called \"tesmark key nw\"."), std::string::npos)
        << below.error;
    EXPECT_NE(below.error.find("is \"tesmark key new\" meant?"), std::string::npos);
    const auto far = Tesmark({"frobnicate"});
    EXPECT_NE(far.error.find("\"tesmark frobnicate\""), std::string::npos) << far.error;
    EXPECT_EQ(far.error.find("meant?"), std::string::npos) << far.error;
}

TEST_F(HelpTest, AScriptGetsItsDocumentOfAWordThatIsNoCommandToo) {
    for (const std::vector<std::string>& line :
         std::vector<std::vector<std::string>>{{"stmp"}, {"key", "nw"}, {"--json", "stmp"}, {}}) {
        EXPECT_EQ(Json(line)["error"]["exit"].asInt(), 2);
    }
}

// Nor is it taken for a command where one was named.
TEST_F(HelpTest, WhatIsMissingBehindACommandIsStillTold) {
    const auto outcome = Tesmark({"seal", "new", "stray"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.error.find("--name is required"), std::string::npos) << outcome.error;
}

TEST_F(HelpTest, WordsThatNobodyTakesAreToldInTheOrderTheyWereTyped) {
    const auto outcome = Tesmark({"stamp", "a.pdf", "b.pdf", "c", "--pag", "1"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.error.find("Not understood: c --pag 1."), std::string::npos) << outcome.error;
    EXPECT_NE(Tesmark({"--jsn"}).error.find("Not understood: --jsn."), std::string::npos);
}

TEST_F(HelpTest, APinInTwoPlacesIsRefused) {
    EXPECT_EQ(Tesmark({"sign", "f", "--pin", "1", "--pin-file", "f"}).exitCode, 2);
}

}  // namespace
