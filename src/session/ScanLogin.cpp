#include "session/ScanLogin.h"

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "foundation/Registry.h"
#include "foundation/Text.h"
#include "host/ModuleState.h"
#include "session/ScanRequest.h"

namespace {

constexpr char kDeviceCertId[] = "HLVQDefaultContainer/hlvqDev000000000000000000";

int Login(const char* certId, const std::string& pin) {
    const int code = g_appOpt.LoginIn(certId, pin.c_str());
    if (code == 0) return 0;
    TESMARK_LOG(kLogError, "pzm LoginIn error %d", code);
    return TESMARK_LOGIN_FAILED;
}

}  // namespace

std::string BuildScanLoginPin() {
    ScanLoginRequest request;
    request.type = "1";
    request.showselectcertwnd = "1";
    if (g_appId.Empty()) g_appId.Assign(ReadTextSetting("appid"));
    request.appid = g_appId.View();
    TESMARK_LOG(kLogError, "g_appId is %s", g_appId.Text().c_str());
    return Base64Encode(request.StyledText());
}

int LoginByScan(const std::string& certId) {
    const std::string pin = BuildScanLoginPin();
    g_appOpt.Logout(certId.c_str());
    return Login(certId.c_str(), pin);
}

namespace session {

int SetAppId(const unsigned char* appId, int appIdLen) {
    TESMARK_LOG_SCOPE("SetAppId");
    g_appId.AssignFromHost(appId, appIdLen);
    return 0;
}

int PZMLogin() {
    TESMARK_LOG_SCOPE("PZMLogin");
    if (const int code = EnsureServiceReady()) return code;
    return Login(kDeviceCertId, BuildScanLoginPin());
}

}  // namespace session
