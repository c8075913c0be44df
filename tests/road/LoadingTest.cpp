#include <cstdio>

#include "components/certservice/ServiceCodes.h"
#include "road/LoadingTest.h"

namespace {

TEST_F(LoadingTest, TheLogTellsWrongPinLockedRemovedAndDamagedApart) {
    const std::string wrong = MakeKey(KeyKind::kSm2, "wrong");
    const std::string locked = MakeKey(KeyKind::kSm2, "locked");
    const std::string damaged = MakeKey(KeyKind::kSm2, "damaged");
    for (int i = 0; i < kPinTries; ++i) m_keys.Login(locked, "wrong");
    WriteFile("keys/damaged/certificate.pem", "no certificate");
    EXPECT_EQ(Host("login", wrong, "wrong").out, "-3050\n");
    EXPECT_EQ(Host("login", locked).out, "-3050\n");
    EXPECT_EQ(Host("login", damaged).out, "-3050\n");
    EXPECT_EQ(Host("login", "DevKeys/none").out, "-3050\n");
    EXPECT_EQ(LoginCodesInLog(),
              (std::vector<int>{kServicePinWrong, kServiceKeyLocked, kServiceCertificateDamaged,
                                kServiceNoSuchCertificate}));
}

TEST_F(LoadingTest, ThePinStandsNowhereInTheLog) {
    const std::string pin = "s3cr3t-and-long";
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    EXPECT_EQ(Host("login", certId, pin).out, "-3050\n");
    EXPECT_EQ(Host("sign", certId).out, "0\n");
    const std::string log = Log();
    ASSERT_NE(log.find("LoginIn"), std::string::npos);
    EXPECT_EQ(log.find(pin), std::string::npos);
    EXPECT_EQ(log.find(kRoadPin), std::string::npos);
}

TEST_F(LoadingTest, LoadingSigningAndUnloadingLeavesNothingBehind) {
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    const ProgramOutcome host = Host("loop", certId, kRoadPin, "50");
    ASSERT_EQ(host.exitCode, 0) << host.error;
    long heap = 0;
    int objects = -1;
    int descriptors = -1;
    ASSERT_EQ(std::sscanf(host.out.c_str(), "heap %ld objects %d descriptors %d", &heap, &objects,
                          &descriptors),
              3)
        << host.out;
    EXPECT_EQ(objects, 0);
    EXPECT_EQ(descriptors, 0);
    // The heap's own bookkeeping wanders by some hundred bytes a round; a certificate or a key that
    // stayed behind would be thousands. What is smaller the leak check of the sanitizers finds.
    EXPECT_LT(heap, 64 * 1024);
}

TEST_F(LoadingTest, AProcessMayEndWithoutUnInit) {
    for (const KeyKind kind : {KeyKind::kSm2, KeyKind::kRsa}) {
        const std::string certId = MakeKey(kind, kind == KeyKind::kSm2 ? "sm2" : "rsa");
        const ProgramOutcome host = Host("leave", certId);
        EXPECT_EQ(host.exitCode, 0) << host.error;
        EXPECT_EQ(host.out, "0\n");
    }
}

TEST_F(LoadingTest, ASealLibraryThatIsLoadedAlreadyTakesTheOpenOnesPlace) {
    const ProgramOutcome host = Host("beside", "none", "none", ROAD_OTHER_SEAL_LIBRARY);
    EXPECT_EQ(host.exitCode, 0) << host.error;
    EXPECT_EQ(host.out, "the other TVK_Initialize\n");
}

TEST_F(LoadingTest, TheOpenSealLibraryIsUsedWhereThereIsNoOther) {
    const std::string certId = MakeKey(KeyKind::kSm2, "key");
    EXPECT_EQ(Host("sign", certId).out, "0\n");
}

}  // namespace
