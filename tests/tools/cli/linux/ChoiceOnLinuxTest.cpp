// Certificates and seals that nobody has named, where nobody can be asked.

#include "tools/cli/PhoneFixture.h"

namespace {

class ChoiceOnLinux : public PhoneFixture {
protected:
    ChoiceOnLinux() { WriteFile(m_file, "f"); }

    ProgramOutcome Sign(std::vector<std::string> more) const {
        more.insert(more.begin(), {"sign", m_file});
        return Tesmark(more);
    }
    void ExpectChoice(const ProgramOutcome& outcome, const std::vector<std::string>& told) const {
        EXPECT_EQ(outcome.exitCode, 5);
        for (const std::string& text : told) {
            EXPECT_NE(outcome.error.find(text), std::string::npos) << text << outcome.error;
        }
        EXPECT_TRUE(NothingWritten());
        EXPECT_TRUE(FilesBeginningWith("f.p7s").empty());
    }

    std::string m_file = InPrefix("f");
};

TEST_F(ChoiceOnLinux, TwoSealsWithoutADialogGiveAListAndTheHintToNameOne) {
    MakeKey("rsa", "rsa2048");
    MakeSeal("rsa", "es", "first");
    MakeSeal("rsa", "es", "second");
    ExpectChoice(Stamp({"--pin", "123456"}), {"more than one seal", "first", "second", "--seal"});
}

TEST_F(ChoiceOnLinux, TwoCertificatesWithoutADialogGiveAListAndTheHintToNameOne) {
    MakeKey("rsa", "rsa2048");
    MakeKey("sm2", "sm2");
    MakeSeal("rsa", "es", "seal");
    ExpectChoice(Stamp({"--pin", "123456"}),
                 {"more than one certificate", "DevKeys/rsa", "DevKeys/sm2", "--cert"});
}

TEST_F(ChoiceOnLinux, ASignatureByOneOfTwoCertificatesWantsAName) {
    MakeKey("rsa", "rsa2048");
    MakeKey("sm2", "sm2");
    ExpectChoice(Sign({"--pin", "123456"}), {"DevKeys/rsa", "DevKeys/sm2", "--cert"});
}

TEST_F(ChoiceOnLinux, WhereNothingWasChosenNoTryIsSpent) {
    MakeKey("alice", "sm2");
    MakeKey("bob", "sm2");
    MakeSeal("alice", "gb2020", "alice");
    MakeSeal("bob", "gb2020", "bob");
    EXPECT_EQ(Stamp({"--pin", "000000"}).exitCode, 5);
    EXPECT_EQ(Sign({"--pin", "000000"}).exitCode, 5);
    for (const Json::Value& key : Json({"key", "list"})["keys"]) {
        EXPECT_EQ(key["triesLeft"].asInt(), 6);
    }
}

TEST_F(ChoiceOnLinux, SeveralSealsOfAPhoneAreListedAfterTheScan) {
    MakePhone("zhang");
    Bring("gm2014", "first");
    Bring("gm2014", "second");
    ExpectChoice(Stamp({}), {"more than one seal", "first", "second", "--seal"});
}

TEST_F(ChoiceOnLinux, APhoneBesideAKeyIsAChoice) {
    MakePhone("zhang");
    Bring("gm2014", "phone");
    MakeKey("alice", "sm2");
    MakeSeal("alice", "gb2020", "key");
    ExpectChoice(Stamp({"--pin", "123456"}), {kPhoneCertId, "DevKeys/alice", "--cert"});
}

}  // namespace
