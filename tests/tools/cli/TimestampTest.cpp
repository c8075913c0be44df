// Signatures with time stamps of an authority on the loopback address: made, shown, verified.

#include <filesystem>

#include "StampFixture.h"
#include "components/certservice/Certificate.h"
#include "components/certservice/DevelopmentCa.h"
#include "components/certservice/Places.h"
#include "components/certservice/ServiceCodes.h"
#include "support/Environment.h"
#include "support/LoopbackServer.h"
#include "tools/timestampauthority/TimeStampAuthority.h"

namespace {

// An authority below the development CA, which this machine trusts.
class TimestampTest : public StampFixture<CliTest> {
protected:
    TimestampTest() {
        MakeKey("rsa", "rsa2048");
        MakeSeal("rsa", "es", "rsa");
        MakeAuthority(CaFolderPath(), TrustFolderPath());
    }

    // Below the CA in `folder`, whose certificate goes to `trusted`.
    void MakeAuthority(const std::string& folder, const std::string& trusted) {
        int code = 0;
        const auto ca = DevelopmentCa::Open(KeyKind::kRsa, folder, trusted, code);
        const CertificateHandle issuer = ParseCertificate(ca->Certificate());
        m_authority = TimeStampAuthority::Make(issuer.get(), ca->Key());
    }

    // From here on signatures are to be stamped.
    void UseAuthority(const std::string& url) const {
        for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
                 {"TimeStampEngine", CLI_TIME_STAMP_ENGINE},
                 {"TimeStampUrl", url},
                 {"bSignWithTimeStamp", "1"}}) {
            ASSERT_EQ(Tesmark({"config", "set", name, value}).exitCode, 0) << name;
        }
    }

    std::unique_ptr<TimeStampAuthority> m_authority;
    LoopbackServer m_server{
        [this](const LoopbackServer::Request& r) { return m_authority->HttpAnswer(r.body); }};
};

TEST_F(TimestampTest, AStampedPdfCarriesATimeStampThatIsVerified) {
    UseAuthority(m_server.Url("/"));
    const auto stamped = Stamp({"--timestamp", "--pin", "123456"});
    ASSERT_EQ(stamped.exitCode, 0) << stamped.error;
    const Json::Value signature = Json({"verify", m_out})["signatures"][0];
    EXPECT_EQ(signature["verdict"].asString(), "good") << signature;
    EXPECT_EQ(signature["timeStamp"]["time"].asString().size(), 19u);
    EXPECT_EQ(signature["timeStamp"]["policy"].asString(), kAuthorityPolicy);
    EXPECT_EQ(signature["timeStamp"]["hash"].asString(), "SHA256");
    const auto shown = Tesmark({"timestamp", m_out});
    EXPECT_EQ(shown.exitCode, 0) << shown.error;
    EXPECT_EQ(shown.out.rfind("good  Signature1  2", 0), 0u) << shown.out;
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
}

TEST_F(TimestampTest, AStampDrawnOfATextCarriesOneToo) {
    UseAuthority(m_server.Url("/"));
    ASSERT_EQ(Tesmark({"config", "set", "PersonalSealControl", CLI_PERSONAL_SEAL}).exitCode, 0);
    const auto stamped = Stamp({"--text", "Approved", "--timestamp", "--pin", "123456"});
    ASSERT_EQ(stamped.exitCode, 0) << stamped.error;
    EXPECT_NE(stamped.out.find("drawn of a text"), std::string::npos) << stamped.out;
    const Json::Value signature = Json({"verify", m_out})["signatures"][0];
    EXPECT_EQ(signature["verdict"].asString(), "good") << signature;
    EXPECT_EQ(signature["timeStamp"]["policy"].asString(), kAuthorityPolicy);
    EXPECT_EQ(Tesmark({"timestamp", m_out}).exitCode, 0);
    EXPECT_NE(PdfSig().find("Signature is Valid"), std::string::npos);
}

TEST_F(TimestampTest, AStampDrawnOfATextIsNotWrittenWithoutTheTimeStampThatWasAskedFor) {
    UseAuthority(LoopbackServer::DeadUrl("/"));
    ASSERT_EQ(Tesmark({"config", "set", "PersonalSealControl", CLI_PERSONAL_SEAL}).exitCode, 0);
    EXPECT_EQ(Stamp({"--text", "Approved", "--timestamp", "--pin", "123456"}).exitCode, 1);
    EXPECT_TRUE(NothingWritten());
}

TEST_F(TimestampTest, ADrawingOfTheNameCarriesOneToo) {
    UseAuthority(m_server.Url("/"));
    ASSERT_EQ(Tesmark({"config", "set", "PersonalSealControl", CLI_PERSONAL_SEAL}).exitCode, 0);
    ASSERT_EQ(Tesmark({"config", "set", "bSealPosition", "3"}).exitCode, 0);
    const auto stamped = Stamp({"--timestamp", "--pin", "123456"});
    ASSERT_EQ(stamped.exitCode, 0) << stamped.error;
    EXPECT_EQ(Tesmark({"timestamp", m_out}).exitCode, 0);
}

TEST_F(TimestampTest, ASignatureFileCarriesOneToo) {
    UseAuthority(m_server.Url("/"));
    const std::string file = InPrefix("text.txt");
    WriteFile(file, "a text to be signed\n");
    const auto made = Tesmark({"sign", file, "--timestamp", "--pin", "123456"});
    ASSERT_EQ(made.exitCode, 0) << made.error;
    EXPECT_EQ(Tesmark({"timestamp", file + ".p7s"}).exitCode, 0);
    const Json::Value told = Json({"verify", "--detached", file + ".p7s", file});
    EXPECT_EQ(told["verdict"].asString(), "good") << told;
    EXPECT_FALSE(told["timeStamp"].isNull());
}

TEST_F(TimestampTest, AnAuthorityThatIsNotTrustedMakesTheSignatureBad) {
    UseAuthority(m_server.Url("/"));
    ASSERT_EQ(Stamp({"--timestamp", "--pin", "123456"}).exitCode, 0);
    std::filesystem::remove(InTrust("velmora-development-rsa.pem"));
    EXPECT_EQ(Tesmark({"timestamp", m_out}).exitCode, 7);
    const Json::Value row = Json({"timestamp", m_out})["timeStamps"][0];
    EXPECT_EQ(row["verdict"].asString(), "bad");
    EXPECT_EQ(row["code"].asInt(), kServiceTimeStampUntrusted);
    EXPECT_EQ(Tesmark({"verify", m_out}).exitCode, 7);
}

TEST_F(TimestampTest, WithoutTheSettingOrAnAnswerNothingIsWritten) {
    const auto unset = Stamp({"--timestamp", "--pin", "123456"});
    EXPECT_EQ(unset.exitCode, 3);
    EXPECT_NE(unset.error.find("bSignWithTimeStamp"), std::string::npos) << unset.error;
    UseAuthority(LoopbackServer::DeadUrl("/"));
    EXPECT_EQ(Stamp({"--timestamp", "--pin", "123456"}).exitCode, 1);
    EXPECT_TRUE(NothingWritten());
}

TEST_F(TimestampTest, ASealSignatureCarriesNone) {
    UseAuthority(m_server.Url("/"));
    MakeKey("sm2", "sm2");
    MakeSeal("sm2", "gb2020", "sm2");
    const auto outcome = Stamp({"--timestamp", "--cert", "sm2", "--pin", "123456"});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.error.find("carries no time stamp"), std::string::npos) << outcome.error;
    EXPECT_TRUE(NothingWritten());
}

TEST_F(TimestampTest, WhatIsNoSignatureIsNotTakenForOneWithoutATimeStamp) {
    const std::string file = InPrefix("text.txt");
    for (const char* const content : {"a text, no signature\n", ""}) {
        WriteFile(file, content);
        const auto outcome = Tesmark({"timestamp", file});
        EXPECT_EQ(outcome.exitCode, 7);
        EXPECT_EQ(outcome.out.rfind("BAD   " + file + "\n      WRONG: this is not a PKCS#7", 0), 0u)
            << outcome.out;
        const Json::Value row = Json({"timestamp", file})["timeStamps"][0];
        EXPECT_EQ(row["verdict"].asString(), "bad");
        EXPECT_EQ(row["code"].asInt(), kServiceMessageDamaged);
    }
}

// Files that are signed once the setting is on.
class ToldTimestampTest : public TimestampTest {
protected:
    ToldTimestampTest() {
        UseAuthority(m_server.Url("/"));
        WriteFile(m_file, "a text to be signed\n");
    }
    ProgramOutcome Sign(std::vector<std::string> more) const {
        more.insert(more.begin(), {"sign", m_file, "--pin", "123456"});
        return Tesmark(more);
    }

    std::string m_file = InPrefix("text.txt");
};

TEST_F(ToldTimestampTest, ASignatureTellsItsTimeStampWithoutBeingAskedForOne) {
    const auto made = Sign({});
    EXPECT_EQ(made.exitCode, 0) << made.error;
    EXPECT_NE(made.out.find("\n       time stamp 2"), std::string::npos) << made.out;
    EXPECT_EQ(made.error, "") << "there is no terminal";
    const Json::Value told = Json({"sign", m_file, "--pin", "123456"});
    EXPECT_EQ(told["timeStamp"]["verdict"].asString(), "good") << told;
    EXPECT_EQ(told["timeStamp"]["policy"].asString(), kAuthorityPolicy);
}

TEST_F(ToldTimestampTest, ASignatureThatGetsNoneTellsWhy) {
    const auto big = Sign({"--big"});
    EXPECT_EQ(big.exitCode, 0) << big.error;
    EXPECT_NE(big.out.find("\n       no time stamp: a file that is hashed by its path"),
              std::string::npos)
        << big.out;
    const Json::Value raw = Json({"sign", m_file, "--pin", "123456", "--raw"});
    EXPECT_TRUE(raw.isMember("timeStamp") && raw["timeStamp"].isNull()) << raw;
    EXPECT_EQ(raw["noTimeStamp"].asString(), "a bare signature value has no place for one");
}

TEST_F(ToldTimestampTest, BesideASignatureOnStandardOutputItIsToldOnStandardError) {
    // The engine's library is unloaded before the program ends, and then the leak checker of a
    // sanitized program falls over what it remembers of its threads' storage.
    const SavedVariable leakCheckerOptions("LSAN_OPTIONS");
    SetVariable("LSAN_OPTIONS", "use_tls=0");
    const auto made = Sign({"-o", "-"});
    EXPECT_EQ(made.exitCode, 0) << made.error;
    EXPECT_EQ(made.out[0], 0x30);
    EXPECT_EQ(made.error.rfind("time stamp 2", 0), 0u) << made.error;
}

TEST_F(ToldTimestampTest, ATimeStampThatIsNotGoodIsToldSo) {
    MakeAuthority(InPrefix("other/ca"), InPrefix("other/trust"));
    const auto made = Sign({});
    EXPECT_EQ(made.exitCode, 0) << made.error;
    EXPECT_NE(made.out.find("; it is BAD: the time-stamp authority is not trusted"),
              std::string::npos)
        << made.out;
}

TEST_F(ToldTimestampTest, AStampTellsItToo) {
    const auto stamped = Stamp({"--pin", "123456"});
    EXPECT_EQ(stamped.exitCode, 0) << stamped.error;
    EXPECT_NE(stamped.out.find("\n       time stamp 2"), std::string::npos) << stamped.out;
    MakeKey("sm2", "sm2");
    MakeSeal("sm2", "gb2020", "sm2");
    const auto seal = Stamp({"--cert", "sm2", "--pin", "123456"});
    EXPECT_EQ(seal.exitCode, 0) << seal.error;
    EXPECT_NE(seal.out.find("\n       no time stamp: a signature with a seal of a national form"),
              std::string::npos)
        << seal.out;
}

TEST_F(ToldTimestampTest, AStampOfALargeFileGetsOneOnlyWhereItIsAskedForAndTellsWhy) {
    const std::string large = InPrefix("large.pdf");
    const std::string contract = FileContent(kContract);
    const auto write = [&](std::size_t size) {
        const std::string end = "\n" + contract.substr(contract.rfind("startxref"));
        const std::string start = contract + "\n%";
        WriteFile(large, start + std::string(size - start.size() - end.size(), 'x') + end);
    };
    constexpr std::size_t kByPath = 8 * 1024 * 1024;
    const std::vector<std::string> command = {"stamp", large, m_out, "--pin", "123456"};
    // What is signed has the update behind the file in it.
    for (const std::size_t size : {kByPath, kByPath - 1}) {
        write(size);
        const Json::Value told = Json(command);
        EXPECT_TRUE(told.isMember("timeStamp") && told["timeStamp"].isNull()) << told;
        EXPECT_EQ(told["noTimeStamp"].asString(), "a file that is hashed by its path gets none");
        std::vector<std::string> asked = command;
        asked.push_back("--timestamp");
        EXPECT_EQ(Json(asked)["timeStamp"]["verdict"].asString(), "good");
    }
    write(kByPath - 1024 * 1024);
    EXPECT_EQ(Json(command)["timeStamp"]["verdict"].asString(), "good");
}

TEST_F(ToldTimestampTest, WithoutTheSettingNothingIsToldOfTimeStamps) {
    ASSERT_EQ(Tesmark({"config", "unset", "bSignWithTimeStamp"}).exitCode, 0);
    EXPECT_EQ(Sign({}).out.find("time stamp"), std::string::npos);
    EXPECT_FALSE(Json({"sign", m_file, "--pin", "123456"}).isMember("timeStamp"));
}

TEST_F(ToldTimestampTest, AFailureTellsWhatTheEngineSaidLast) {
    const LoopbackServer refusing(
        [](const std::string&) { return LoopbackServer::Page("503 Service Unavailable", ""); });
    UseAuthority(LoopbackServer::DeadUrl("/1") + ";" + refusing.Url("/2"));
    const auto outcome = Sign({});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_NE(outcome.error.find("code -3008: the time stamp could not be made\n"
                                 "  the time-stamp engine: " +
                                 refusing.Url("/2: HTTP status 503\n")),
              std::string::npos)
        << outcome.error;
    EXPECT_NE(outcome.error.find("tesmark doctor"), std::string::npos) << outcome.error;
}

TEST_F(ToldTimestampTest, AFailureOfLongAgoIsNotTold) {
    UseAuthority(LoopbackServer::DeadUrl("/"));
    ASSERT_EQ(Sign({}).exitCode, 1);
    ASSERT_EQ(Tesmark({"config", "unset", "TimeStampEngine"}).exitCode, 0);
    const auto outcome = Sign({});
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.error.find("the time-stamp engine: "), std::string::npos) << outcome.error;
    EXPECT_NE(outcome.error.find("tesmark doctor"), std::string::npos) << outcome.error;
}

}  // namespace
