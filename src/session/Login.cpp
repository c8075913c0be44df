#include "session/Login.h"

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"
#include "seal/CertKinds.h"
#include "seal/KeyLists.h"
#include "session/UserListText.h"

namespace {

// The result of the last one counts, and a failure doesn't keep the others logged in.
int LogoutOfAll(const std::string& list) {
    int result = 0;
    ListedCert entry;
    for (std::size_t position = 0; NextListedCert(list, position, entry);) {
        result = g_appOpt.Logout(std::string(entry.certId).c_str());
    }
    return result;
}

}  // namespace

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

// A scan's login alone is ended, so that it works with all keys pulled.
int Logout() {
    TESMARK_LOG_SCOPE("Logout");
    const std::string selected = g_currentCertId.Text();
    int result = 0;
    if (IsScanDevice(selected)) {
        result = g_appOpt.Logout(selected.c_str());
    } else {
        std::string list;
        if (const int code = ReadUserListText(list)) return code;
        if (list.find(kBehindLabel) == std::string::npos) return TESMARK_FAILED;
        result = LogoutOfAll(list);
    }
    g_currentCertId.Clear();
    state::ResetEsealData();
    return result;
}

}  // namespace session
