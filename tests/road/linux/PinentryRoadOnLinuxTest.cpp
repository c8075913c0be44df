#include "components/certservice/ServiceCodes.h"
#include "components/certservice/ServiceSettings.h"
#include "library/bridge/ExportCalls.h"
#include "road/RoadTest.h"

namespace {

constexpr char kData[] = "the bytes of the document";

using PinentryRoadOnLinux = RoadTest;

// The scripted pinentry answers at once, and never with the right PIN.
TEST_F(PinentryRoadOnLinux, AWrongAnswerToThePinentryIsToldAndDoesntLockTheKey) {
    SetServicePath("PinentryProgram", ROAD_PINENTRY);
    const std::string certId = MakeKey(KeyKind::kRsa, "rsa");
    SetCurrentCertID(certId.c_str());
    EXPECT_EQ(SignP1(kData).code, kServicePinWrong);
    EXPECT_EQ(Login(certId), 0);
    EXPECT_EQ(SignP1(kData).code, 0);
}

}  // namespace
