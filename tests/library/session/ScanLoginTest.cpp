#include "session/ScanLogin.h"

#include "ScanTest.h"
#include "foundation/StringFailure.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ScanLoginTest : public ScanTest {
protected:
    static int Name(const std::string& appId) {
        return session::SetAppId(reinterpret_cast<const unsigned char*>(appId.data()),
                                 static_cast<int>(appId.size()));
    }
};

TEST_F(ScanLoginTest, ThePinIsTheBase64OfTheRequestWithoutLineBreaks) {
    ASSERT_EQ(Name("a host with a name that makes the text longer than a line"), 0);
    const std::string pin = BuildScanLoginPin();
    EXPECT_EQ(pin, Pin("a host with a name that makes the text longer than a line"));
    EXPECT_EQ(pin.find('\n'), std::string::npos);
}

TEST_F(ScanLoginTest, ANameThatWasSetBeforeTheFirstScanWinsOverTheRegistryValue) {
    m_prefix.SetText("appid", "registry");
    ASSERT_EQ(Name("host"), 0);
    EXPECT_EQ(BuildScanLoginPin(), Pin("host"));
}

TEST_F(ScanLoginTest, ARegistryValueReadOnceStaysEvenIfTheRegistryChanges) {
    m_prefix.SetText("appid", "first");
    EXPECT_EQ(BuildScanLoginPin(), Pin("first"));
    m_prefix.SetText("appid", "second");
    EXPECT_EQ(BuildScanLoginPin(), Pin("first"));
    ASSERT_EQ(Name(""), 0);
    EXPECT_EQ(BuildScanLoginPin(), Pin("second"));
}

TEST_F(ScanLoginTest, WithTheNameNeitherSetNorInTheRegistryTheRequestGoesOutWithoutOne) {
    EXPECT_EQ(BuildScanLoginPin(), Pin(""));
    EXPECT_THAT(Failures(), ElementsAre("g_appId is "));
}

TEST_F(ScanLoginTest, ARegistryValueOf199BytesIsReadWholeAndOneMoreIsNone) {
    m_prefix.SetText("appid", std::string(200, 'x'));
    EXPECT_EQ(BuildScanLoginPin(), Pin(""));
    m_prefix.SetText("appid", std::string(199, 'x'));
    EXPECT_EQ(BuildScanLoginPin(), Pin(std::string(199, 'x')));
}

TEST_F(ScanLoginTest, TheNameIsLoggedUpToItsZeroByteAndSentWhole) {
    ASSERT_EQ(Name(std::string("ho\0st", 5)), 0);
    ForgetLog();
    EXPECT_EQ(BuildScanLoginPin(), Pin("ho\\u0000st"));
    EXPECT_THAT(Log(), ElementsAre("3 g_appId is ho"));
}

TEST_F(ScanLoginTest, ANameWithoutBytesIsTheStringTypesFailureAndLeavesTheOldOne) {
    ASSERT_EQ(Name("host"), 0);
    EXPECT_THROW(session::SetAppId(nullptr, 3), StringFailure);
    const unsigned char text[] = "text";
    EXPECT_THROW(session::SetAppId(text, -1), StringFailure);
    EXPECT_EQ(g_appId.Text(), "host");
    EXPECT_EQ(session::SetAppId(nullptr, 0), 0);
    EXPECT_TRUE(g_appId.Empty());
}

TEST_F(ScanLoginTest, TheLoginOfTheDeviceTakesItsOwnCertificateAndLeavesTheSelection) {
    g_currentCertId.Assign("cert-1");
    EXPECT_EQ(session::PZMLogin(), 0);
    EXPECT_THAT(fakes::CallTexts("SOF_Login"),
                ElementsAre(testing::HasSubstr("HLVQDefaultContainer/hlvqDev000000000000000000")));
    EXPECT_EQ(SentPin(), Pin(""));
    EXPECT_FALSE(Called("SOF_Logout"));
    EXPECT_EQ(g_currentCertId.Text(), "cert-1");
    EXPECT_THAT(ScanFailures(), IsEmpty());
}

TEST_F(ScanLoginTest, AFailedLoginOfTheDeviceKeepsItsCodeInTheLog) {
    fakes::On("SOF_Login").Returns(2148);
    EXPECT_EQ(session::PZMLogin(), TESMARK_LOGIN_FAILED);
    EXPECT_THAT(ScanFailures(), ElementsAre("pzm LoginIn error 2148"));
}

TEST_F(ScanLoginTest, ADeviceWhoseServiceCannotStartIsNotAsked) {
    m_prefix.RegisterCertService("/nowhere/libKVLAppCOM.so");
    EXPECT_EQ(session::PZMLogin(), TESMARK_SERVICE_NOT_FOUND);
    EXPECT_THAT(Failures(), testing::Not(Contains(testing::StartsWith("g_appId"))));
}

TEST_F(ScanLoginTest, TheScopesOfBothExportsStandInTheLog) {
    ASSERT_EQ(Name("host"), 0);
    EXPECT_THAT(Log(), ElementsAre("8 [SetAppId start]", "8 [SetAppId end][Time consume N ms]"));
    ForgetLog();
    ASSERT_EQ(session::PZMLogin(), 0);
    EXPECT_EQ(Log().front(), "8 [PZMLogin start]");
    EXPECT_EQ(Log().back(), "8 [PZMLogin end][Time consume N ms]");
}

TEST_F(ScanLoginTest, AnEarlierLoginIsEndedFirstWhateverComesOfIt) {
    fakes::On("SOF_Logout").Returns(5);
    ASSERT_EQ(EnsureServiceReady(), 0);
    fakes::ClearCalls();
    EXPECT_EQ(LoginByScan(kScanCert), 0);
    EXPECT_THAT(fakes::CalledFunctions(), ElementsAre("SOF_Logout", "SOF_Login"));
    EXPECT_THAT(ScanFailures(), IsEmpty());
}

}  // namespace
