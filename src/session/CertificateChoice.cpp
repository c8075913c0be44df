#include "session/CertificateChoice.h"

#include <string_view>

#include "TesmarkOpt.h"
#include "dialogs/CertSelect.h"
#include "dialogs/DialogFrame.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"
#include "seal/CertKinds.h"
#include "seal/KeyLists.h"
#include "session/ScanLogin.h"
#include "session/UserListText.h"

namespace {

// The certificates that may be chosen, in the same form.
std::string Offered(std::string_view list) {
    std::string offered;
    ListedCert entry;
    for (std::size_t position = 0; NextListedCert(list, position, entry);) {
        if (IsScanDevice(entry.certId)) {
            if (!IsScanPlaceholder(entry.certId)) continue;
            entry.label = kScanLabel;
        }
        offered.append(entry.label).append(kBehindLabel).append(entry.certId).append(kBehindEntry);
    }
    return offered;
}

// Where the first label ended in the whole list, that place is looked at in what is offered: with a
// certificate left out or a label replaced ahead of it, one certificate can so count as several and
// two as one. Hosts know it so.
bool CountsAsSeveral(std::string_view list, std::string_view offered) {
    return offered.find(kBehindLabel, list.find(kBehindLabel) + 2) != std::string_view::npos;
}

void TakeFirst(std::string_view offered, std::string& certId) {
    ListedCert entry;
    std::size_t position = 0;
    if (!NextListedCert(offered, position, entry)) return;
    g_pickedCertLabel = entry.label;
    certId = entry.certId;
    g_currentCertId.Assign(entry.certId);
}

int AskUser(const std::string& offered, std::string& certId) {
    g_dialogCertLabel = offered;
    const int end = ShowCertSelect();
    if (end == kDialogConfirmed) certId = g_currentCertId.Text();
    return end == kDialogCancelled ? TESMARK_FAILED : 0;
}

int ForgetChoice() {
    g_pickedCertLabel.clear();
    g_currentCertId.Clear();
    return TESMARK_LOGIN_FAILED;
}

// A service whose file can't be asked tells no identifier, and none is selected then.
int LoginToCloud(std::string& certId) {
    if (const int code = g_appOpt.LoginIn(certId.c_str(), "")) {
        TESMARK_LOG(kLogError, "wfk LoginIn error %d", code);
        return ForgetChoice();
    }
    CBuffer found;
    if (const int code = g_appOpt.GetLastLoginCertID(certId.c_str(), found)) return code;
    certId = found ? found.Text() : "";
    g_currentCertId.Assign(certId);
    return 0;
}

int TypeOfSelected(char* type) {
    std::string certId;
    if (const int code = TakeCertificate(certId)) return code;
    return g_appOpt.GetKeyType(certId.c_str(), type);
}

}  // namespace

// The logins follow a cancelled dialog too: the result tells the dialog, what was selected before
// is still selected.
int ChooseCertificate(std::string& certId) {
    std::string list;
    if (const int code = ReadUserListText(list)) return code;
    if (list.find(kBehindLabel) == std::string::npos) return TESMARK_FAILED;
    const std::string offered = Offered(list);
    g_pickedCertLabel.clear();
    int result = 0;
    if (CountsAsSeveral(list, offered)) {
        result = AskUser(offered, certId);
    } else {
        TakeFirst(offered, certId);
    }
    if (IsCloudLabel(g_pickedCertLabel)) {
        if (const int code = LoginToCloud(certId)) return code;
    }
    const std::string selected = g_currentCertId.Text();
    if (IsScanDevice(selected) && LoginByScan(selected) != 0) return ForgetChoice();
    return result;
}

int TakeCertificate(std::string& certId) {
    if (g_currentCertId.Empty()) {
        std::string chosen;
        if (const int code = ChooseCertificate(chosen)) return code;
        g_currentCertId.Assign(chosen);
    }
    certId = g_currentCertId.Text();
    return 0;
}

int session::GetCertType(char* type) {
    if (const int code = EnsureServiceReadyToSign()) return code;
    const int code = TypeOfSelected(type);
    if (code != 0) state::ClearSelectKeyID();
    return code;
}
