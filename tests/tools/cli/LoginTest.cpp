// `tesmark login` and `tesmark logout`.

#include "PhoneFixture.h"

namespace {

using LoginTest = PhoneFixture;

TEST_F(LoginTest, TheRightPinIsTakenAndTheTriesAreTold) {
    MakeKey("alice", "sm2");
    const Json::Value told = Json({"login", "--pin", "123456"});
    EXPECT_EQ(told["certId"].asString(), "DevKeys/alice");
    EXPECT_EQ(told["triesLeft"].asInt(), 6);
    EXPECT_FALSE(told["scan"].asBool());
    const auto outcome = Tesmark({"login", "--pin-file", "-"}, "123456\n");
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.out.find("6 tries left"), std::string::npos) << outcome.out;
}

TEST_F(LoginTest, AWrongPinIsToldWithTheTriesThatAreLeft) {
    MakeKey("alice", "sm2");
    for (const char* left : {"5 tries left", "4 tries left"}) {
        const auto outcome = Tesmark({"login", "--pin", "000000"});
        EXPECT_EQ(outcome.exitCode, 6);
        EXPECT_NE(outcome.error.find(left), std::string::npos) << outcome.error;
        EXPECT_NE(outcome.error.find("0x0B000020"), std::string::npos) << outcome.error;
    }
    EXPECT_EQ(Json({"login", "--pin", "123456"})["triesLeft"].asInt(), 6);
}

TEST_F(LoginTest, ALockedKeyIsToldAsLocked) {
    MakeKey("alice", "sm2");
    for (int i = 0; i < 6; ++i) Tesmark({"login", "--pin", "000000"});
    const auto outcome = Tesmark({"login", "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_NE(outcome.error.find("locked"), std::string::npos) << outcome.error;
}

TEST_F(LoginTest, WithoutATerminalThePinHasToBeGiven) {
    MakeKey("alice", "sm2");
    ProgramOptions nobodyThere;
    nobodyThere.hasTerminal = false;
    const auto outcome = Tesmark({"login"}, nobodyThere);
    EXPECT_EQ(outcome.exitCode, 6);
    EXPECT_NE(outcome.error.find("--pin-file"), std::string::npos) << outcome.error;
}

TEST_F(LoginTest, ALoginHelpsNoOtherCommand) {
    MakeKey("alice", "sm2");
    WriteFile(InPrefix("f"), "f");
    ASSERT_EQ(Tesmark({"login", "--pin", "123456"}).exitCode, 0);
    ProgramOptions nobodyThere;
    nobodyThere.hasTerminal = false;
    EXPECT_EQ(Tesmark({"sign", InPrefix("f")}, nobodyThere).exitCode, 6);
}

TEST_F(LoginTest, OneOfSeveralCertificatesHasToBeNamed) {
    MakeKey("alice", "sm2");
    MakeKey("bob", "sm2");
    EXPECT_EQ(Tesmark({"login", "--pin", "123456"}).exitCode, 5);
    EXPECT_EQ(Json({"login", "--cert", "bob", "--pin", "123456"})["certId"].asString(),
              "DevKeys/bob");
}

TEST_F(LoginTest, AScanShowsTheSealsThatItBrings) {
    MakePhone("zhang");
    Bring("gm2014", "first");
    Bring("es", "second");
    MakeKey("alice", "sm2");
    const Json::Value told = Json({"login", "--scan"});
    EXPECT_EQ(told["certId"].asString(), kPhoneCertId);
    EXPECT_TRUE(told["scan"].asBool());
    ASSERT_EQ(told["seals"].size(), 2u);
    EXPECT_EQ(told["seals"][0]["name"].asString(), "second");
    EXPECT_EQ(told["seals"][1]["file"].asString(), "SEAL01");
    EXPECT_EQ(Json({"list"})["certificates"][1]["seals"].size(), 0u)
        << "the scan ended with the command";
}

TEST_F(LoginTest, ThePhoneIsScannedWithWhereItIsNamedOrAlone) {
    MakePhone("zhang");
    EXPECT_TRUE(Json({"login"})["scan"].asBool());
    MakeKey("alice", "sm2");
    EXPECT_TRUE(Json({"login", "--cert", "zhang"})["scan"].asBool());
}

TEST_F(LoginTest, AScanThatComesToNothingTellsWhy) {
    const auto none = Tesmark({"login", "--scan"});
    EXPECT_EQ(none.exitCode, 3);
    EXPECT_NE(none.error.find("tesmark key scan"), std::string::npos) << none.error;
    MakePhone("zhang");
    SetAnswer("refuse");
    const auto refused = Tesmark({"login", "--scan"});
    EXPECT_EQ(refused.exitCode, 6);
    EXPECT_NE(refused.error.find("0x0B000097"), std::string::npos) << refused.error;
    SetAnswer("silent");
    const auto silent = Tesmark({"login", "--scan"});
    EXPECT_EQ(silent.exitCode, 6);
    EXPECT_NE(silent.error.find("0x0B000098"), std::string::npos) << silent.error;
}

TEST_F(LoginTest, WithoutAKeyThereIsNothingToOpenOrToClose) {
    EXPECT_EQ(Tesmark({"login", "--pin", "123456"}).exitCode, 3);
    EXPECT_EQ(Tesmark({"logout"}).exitCode, 3);
}

TEST_F(LoginTest, ALogoutTellsAllCertificates) {
    MakeKey("alice", "sm2");
    MakePhone("zhang");
    const Json::Value told = Json({"logout"})["certificates"];
    ASSERT_EQ(told.size(), 2u);
    EXPECT_EQ(told[0].asString(), "DevKeys/alice");
    EXPECT_EQ(told[1].asString(), kPhoneCertId);
}

TEST_F(LoginTest, TheHelpSaysWhatALoginIsWorth) {
    const auto login = Tesmark({"login", "--help"});
    EXPECT_EQ(login.exitCode, 0);
    EXPECT_NE(login.out.find("helps no other command"), std::string::npos) << login.out;
    EXPECT_EQ(Tesmark({"logout", "--help"}).exitCode, 0);
}

}  // namespace
