#include "session/Login.h"

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"

namespace session {

int LoginIn(const char* certId, const char* pin) {
    if (const int code = g_appOpt.LoginIn(certId, pin)) {
        TESMARK_LOG(kLogError, "LoginIn error %d", code);
        return TESMARK_LOGIN_FAILED;
    }
    g_currentCertId.AssignText(certId);
    return 0;
}

int CurrentCertLogin(const char* certId, const char* pin) {
    if (const int code = g_appOpt.LoginIn(certId, pin)) {
        TESMARK_LOG(kLogError, "pzm LoginIn error %d", code);
        return TESMARK_LOGIN_FAILED;
    }
    return 0;
}

}  // namespace session
