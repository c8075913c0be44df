// `tesmark stamp` with seals of the online seal service.

#include <gmock/gmock.h>

#include "SourceFixture.h"
#include "support/LoopbackServer.h"

namespace {

using testing::HasSubstr;

using OnlineStampTest = OnlineFixture;

TEST_F(OnlineStampTest, AGbSealMakesASealSignatureUnderItsOwnSubFilter) {
    MakeKey("alice", "sm2");
    Offer("alice", "gb2020");
    const Json::Value stamped = Stamped();
    EXPECT_EQ(stamped["source"].asString(), "online");
    EXPECT_EQ(stamped["mode"].asInt(), 1);
    EXPECT_EQ(stamped["subFilter"].asString(), "GBT38540.SESeal");
    EXPECT_EQ(stamped["widthMm"].asDouble(), 42);
    ExpectVerified();
}

TEST_F(OnlineStampTest, AGmSealMakesASealSignatureUnderItsOwnSubFilter) {
    MakeKey("alice", "sm2");
    Offer("alice", "gm2014");
    const Json::Value stamped = Stamped();
    EXPECT_EQ(stamped["mode"].asInt(), 1);
    EXPECT_EQ(stamped["subFilter"].asString(), "GMT0031.SESeal");
    ExpectVerified();
}

TEST_F(OnlineStampTest, AnEsSealMakesASignatureThatPdfsigCallsValid) {
    MakeKey("rsa", "rsa2048");
    Offer("rsa", "es");
    const Json::Value stamped = Stamped();
    EXPECT_EQ(stamped["mode"].asInt(), 0);
    EXPECT_EQ(stamped["subFilter"].asString(), "adbe.pkcs7.detached");
    EXPECT_NEAR(stamped["widthMm"].asDouble(), 42, 0.1);
    ExpectPdfSigValid();
    ExpectVerified();
}

TEST_F(OnlineStampTest, TheTextTellsWhereThePictureComesFrom) {
    MakeKey("rsa", "rsa2048");
    Offer("rsa", "es");
    const auto outcome = Stamp({"--pin", "123456"});
    EXPECT_THAT(outcome.out, HasSubstr("picture of a seal of the online seal service"));
}

TEST_F(OnlineStampTest, TheCertificateThatIsNamedIsTheOneThatIsAskedFor) {
    MakeKey("alice", "sm2");
    MakeKey("bob", "sm2");
    Offer("alice", "gm2014");
    Offer("bob", "gm2014");
    EXPECT_EQ(Stamped({"--cert", "bob"})["certId"].asString(), "DevKeys/bob");
    ExpectVerified();
}

TEST_F(OnlineStampTest, ACertificateThatIsNotThereIsNamed) {
    MakeKey("alice", "sm2");
    ExpectRefusal({"--cert", "carol"}, 5, "carol");
}

TEST_F(OnlineStampTest, WithoutAKeyNobodyIsAsked) { ExpectRefusal({}, 3, "tesmark key new"); }

TEST_F(OnlineStampTest, ACertificateOfWhichTheServiceHasNoSealIsRefused) {
    MakeKey("alice", "sm2");
    ExpectRefusal({}, 1, "-3052: the online seal service has no seal of this certificate");
    ExpectRefusal({}, 1,
                  "No seal can be had from the online seal service at " + m_service.Address());
    ExpectRefusal({}, 1, "have it give one out for the certificate of alice");
}

TEST_F(OnlineStampTest, ASuspendedSealIsNone) {
    MakeKey("alice", "sm2");
    m_service.Suspend(Offer("alice", "gb2020"));
    ExpectRefusal({}, 1, "-3052");
}

TEST_F(OnlineStampTest, OfSeveralSealsNoneCanBePicked) {
    MakeKey("alice", "sm2");
    Offer("alice", "gb2020");
    Offer("alice", "gm2014");
    ExpectRefusal({}, 1, "none can be picked here");
}

TEST_F(OnlineStampTest, OfSeveralSealsTheOneThatIsNotSuspendedIsStamped) {
    MakeKey("alice", "sm2");
    m_service.Suspend(Offer("alice", "gb2020"));
    Offer("alice", "gm2014");
    EXPECT_EQ(Stamped()["subFilter"].asString(), "GMT0031.SESeal");
}

TEST_F(OnlineStampTest, ASealOfAnotherSignerIsRefused) {
    MakeKey("alice", "sm2");
    const std::string certificate = CertificateOf("alice");
    MakeKey("bob", "sm2");
    m_service.Offer(certificate, TakenSeal("bob", "gb2020"));
    ExpectRefusal({"--cert", "alice"}, 1,
                  "the certificate is not one of those that the seal names");
}

TEST_F(OnlineStampTest, ASealNamedIsRefusedBeforeTheKeyIsTried) {
    MakeKey("alice", "sm2");
    const auto outcome = Stamp({"--seal", "GBESEAL", "--pin", "000000"});
    EXPECT_EQ(outcome.exitCode, 2);
    EXPECT_THAT(outcome.error, HasSubstr("--seal names a seal in a key"));
    EXPECT_EQ(TriesLeft(), 6);
}

TEST_F(OnlineStampTest, AWrongPinCostsOneTryAndAsksNobody) {
    MakeKey("alice", "sm2");
    Offer("alice", "gb2020");
    EXPECT_EQ(Stamp({"--pin", "000000"}).exitCode, 6);
    EXPECT_EQ(TriesLeft(), 5);
    EXPECT_TRUE(NothingWritten());
}

TEST_F(OnlineStampTest, AMachineWithoutAnAddressIsToldHowToGiveIt) {
    MakeKey("alice", "sm2");
    ASSERT_EQ(Tesmark({"config", "unset", "sWSURL"}).exitCode, 0);
    ExpectRefusal({}, 3, "tesmark config online http://HOST/QelmServlet");
}

TEST_F(OnlineStampTest, AnAddressThatTheLibraryTakesForNoneIsToldAsSuch) {
    MakeKey("alice", "sm2");
    m_prefix.SetText("sWSURL", "http://" + std::string(181, 'a') + "/QelmServlet");
    ExpectRefusal({}, 3, "the library takes it for none");
}

TEST_F(OnlineStampTest, AServerThatIsDownIsToldByTheTransportsCode) {
    MakeKey("alice", "sm2");
    Set("sWSURL", LoopbackServer::DeadUrl("/QelmServlet"));
    ExpectRefusal({}, 1, "nobody listens there");
    ExpectRefusal({}, 1, "tesmark config get ServiceProxy");
    const Json::Value error = Stamped()["error"];
    EXPECT_EQ(error["code"].asInt(), 0x0E000011);
}

TEST_F(OnlineStampTest, AServerOfAnotherKindAnswersWithAPageThatIsNoSeal) {
    MakeKey("alice", "sm2");
    LoopbackServer server(
        [](const std::string&) { return LoopbackServer::Page("404 Not Found", "<html></html>"); });
    Set("sWSURL", server.Url("/QelmServlet"));
    ExpectRefusal({}, 1, "knows no such address");
}

TEST_F(OnlineStampTest, ADocumentThatIsHashedByItsPathIsSealedToo) {
    MakeKey("alice", "sm2");
    Offer("alice", "gb2020");
    const std::string contract = FileContent(kContract);
    const std::string large = InPrefix("large.pdf");
    WriteFile(large, contract + "\n%" + std::string(9'000'000, 'x') + "\n" +
                         contract.substr(contract.rfind("startxref")));
    ASSERT_EQ(Tesmark({"stamp", large, m_out, "--pin", "123456"}).exitCode, 0);
    ExpectVerified();
}

TEST_F(OnlineStampTest, SealsInKeysAreLeftAlone) {
    MakeKey("alice", "sm2");
    MakeSeal("alice", "gb2020", "alice");
    ExpectRefusal({}, 1, "-3052");
    Set("bSealPosition", "0");
    EXPECT_EQ(Stamped()["source"].asString(), "key");
}

}  // namespace
