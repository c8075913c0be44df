// `tesmark key scan`, and stamps and signatures by a scan.

#include <filesystem>

#include "PhoneFixture.h"

namespace {

using ScanTest = PhoneFixture;

TEST_F(ScanTest, APhoneIsListedUnderItsPlaceholderWithThePersonAndNoSeal) {
    MakePhone("zhang");
    Bring("gm2014", "zhang");
    const Json::Value certificates = Json({"list"})["certificates"];
    ASSERT_EQ(certificates.size(), 1u);
    EXPECT_EQ(certificates[0]["certId"].asString(), kPhoneCertId);
    EXPECT_EQ(certificates[0]["commonName"].asString(), "zhang");
    EXPECT_TRUE(certificates[0]["problem"].isNull());
    EXPECT_EQ(certificates[0]["seals"].size(), 0u);
    const Json::Value keys = Json({"key", "list"})["keys"];
    ASSERT_EQ(keys.size(), 1u);
    EXPECT_TRUE(keys[0]["triesLeft"].isNull());
}

TEST_F(ScanTest, WithoutAPhoneTheWayToOneIsToldAndNothingIsMade) {
    for (const std::vector<std::string>& more :
         {std::vector<std::string>{}, {"--answer", "refuse"}, {"--remove"}}) {
        std::vector<std::string> arguments = {"key", "scan"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        const auto outcome = Tesmark(arguments);
        EXPECT_EQ(outcome.exitCode, 3);
        EXPECT_NE(outcome.error.find("tesmark key scan --name"), std::string::npos);
    }
    EXPECT_FALSE(std::filesystem::exists(InKeys(".scan")));
}

TEST_F(ScanTest, TheAnswerIsShownChangedAndOneOfThree) {
    MakePhone("zhang");
    EXPECT_EQ(Json({"key", "scan"})["answer"].asString(), "accept");
    for (const char* answer : {"refuse", "silent", "accept"}) {
        SetAnswer(answer);
        EXPECT_EQ(Json({"key", "scan"})["answer"].asString(), answer);
    }
    EXPECT_EQ(Tesmark({"key", "scan", "--answer", "perhaps"}).exitCode, 2);
    EXPECT_EQ(Tesmark({"key", "scan", "--algorithm", "sm2"}).exitCode, 2);
    EXPECT_EQ(Tesmark({"key", "scan", "--remove", "--answer", "refuse"}).exitCode, 2);
}

TEST_F(ScanTest, APhoneThatIsRemovedIsNoKeyAnyMore) {
    MakePhone("zhang");
    ASSERT_EQ(Tesmark({"key", "scan", "--remove"}).exitCode, 0);
    EXPECT_EQ(Json({"list"})["certificates"].size(), 0u);
    EXPECT_TRUE(std::filesystem::exists(InKeys(".scan/zhang/key.pem")));
}

TEST_F(ScanTest, AnotherPersonTakesThePhoneAndATakenNameLeavesItAsItWas) {
    MakePhone("zhang");
    SetAnswer("refuse");
    const auto taken = Tesmark({"key", "scan", "--name", "zhang"});
    EXPECT_EQ(taken.exitCode, 1);
    EXPECT_EQ(Json({"key", "scan"})["person"].asString(), "zhang");
    MakePhone("li");
    const Json::Value phone = Json({"key", "scan"});
    EXPECT_EQ(phone["person"].asString(), "li");
    EXPECT_EQ(phone["answer"].asString(), "refuse");
    EXPECT_EQ(Json({"list"})["certificates"][0]["commonName"].asString(), "li");
}

TEST_F(ScanTest, ARecordThatIsDamagedIsToldAndNotWrittenOver) {
    MakePhone("zhang");
    WriteFile(InKeys(".scan/phone.json"), "no record");
    EXPECT_EQ(Tesmark({"key", "scan", "--answer", "refuse"}).exitCode, 1);
    EXPECT_EQ(Tesmark({"key", "scan", "--name", "li"}).exitCode, 1);
    EXPECT_EQ(FileContent(InKeys(".scan/phone.json")), "no record");
    ASSERT_EQ(Tesmark({"key", "scan", "--remove"}).exitCode, 0);
}

TEST_F(ScanTest, APhoneTakesNoSealThatTheLibraryCouldNotReadFromIt) {
    MakePhone("zhang");
    const auto outcome = Tesmark({"seal", "new", "--name", "zhang"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_NE(outcome.error.find("--form gm2014"), std::string::npos) << outcome.error;
}

TEST_F(ScanTest, OneSealOfAPhoneIsStampedWithoutAPinOrADialog) {
    MakePhone("zhang");
    Bring("gm2014", "zhang");
    const Json::Value stamped = Json({"stamp", kContract, m_out});
    EXPECT_EQ(stamped["certId"].asString(), kPhoneCertId);
    EXPECT_EQ(stamped["signer"].asString(), "zhang");
    EXPECT_EQ(stamped["mode"].asInt(), 1);
    EXPECT_EQ(stamped["widthMm"].asDouble(), 42);
    EXPECT_EQ(Tesmark({"verify", m_out}).exitCode, 0);
}

TEST_F(ScanTest, AnEsSealAndABarePictureOfAPhoneGiveSignaturesThatPdfsigCallsValid) {
    MakePhone("zhang", "rsa2048");
    Bring("picture", "zhang");
    const Json::Value bare = Json({"stamp", kContract, m_out});
    EXPECT_EQ(bare["mode"].asInt(), 0);
    EXPECT_NEAR(bare["widthMm"].asDouble(), 42, 0.1);
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
    std::filesystem::remove(InKeys(".scan/zhang/files/HLVQSEAL"));
    Bring("es", "zhang");
    ASSERT_EQ(Stamp({}).exitCode, 0);
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
}

TEST_F(ScanTest, APhoneThatRefusesOrIsSilentIsToldAsSuchAndNothingIsWritten) {
    MakePhone("zhang");
    Bring("gm2014", "zhang");
    SetAnswer("refuse");
    const auto refused = Stamp({});
    EXPECT_EQ(refused.exitCode, 6);
    EXPECT_NE(refused.error.find("refused on the phone"), std::string::npos) << refused.error;
    SetAnswer("silent");
    const auto silent = Stamp({"--cert", "zhang"});
    EXPECT_EQ(silent.exitCode, 6);
    EXPECT_NE(silent.error.find("nobody answered"), std::string::npos) << silent.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(ScanTest, APhoneWithoutASealBringsNothingToStampWith) {
    MakePhone("zhang");
    const auto outcome = Stamp({});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.error.find("brought no file"), std::string::npos) << outcome.error;
}

TEST_F(ScanTest, OneOfSeveralSealsOfAPhoneIsNamed) {
    MakePhone("zhang");
    Bring("gm2014", "first");
    Bring("gm2014", "second");
    const auto named = Stamp({"--cert", kPhoneCertId, "--seal", "second"});
    EXPECT_EQ(named.exitCode, 0) << named.error;
}

TEST_F(ScanTest, APhoneBesideAKeyIsNamedByItsCertificate) {
    MakePhone("zhang");
    Bring("gm2014", "phone");
    MakeKey("alice", "sm2");
    MakeSeal("alice", "gb2020", "key");
    const Json::Value scanned = Json({"stamp", kContract, m_out, "--cert", "zhang"});
    EXPECT_EQ(scanned["certId"].asString(), kPhoneCertId);
    const Json::Value keyed =
        Json({"stamp", kContract, m_out, "--cert", "alice", "--pin", "123456"});
    EXPECT_EQ(keyed["certId"].asString(), "DevKeys/alice");
}

TEST_F(ScanTest, ASignatureByAPhoneScansFirst) {
    MakePhone("zhang");
    WriteFile(InPrefix("f"), "f");
    EXPECT_EQ(Json({"sign", InPrefix("f")})["certId"].asString(), kPhoneCertId);
    EXPECT_EQ(Tesmark({"verify", "--detached", InPrefix("f.p7s"), InPrefix("f")}).exitCode, 0);
    SetAnswer("refuse");
    EXPECT_EQ(Tesmark({"sign", InPrefix("f")}).exitCode, 6);
}

TEST_F(ScanTest, DoctorFindsNothingWrongWithAPhone) {
    MakePhone("zhang");
    const auto outcome = Tesmark({"doctor"});
    EXPECT_NE(outcome.out.find(kPhoneCertId), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find("WRONG  key"), std::string::npos) << outcome.out;
}

}  // namespace
