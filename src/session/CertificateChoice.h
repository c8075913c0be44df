// CertificateChoice.h - a certificate where none is selected yet.
#pragma once

#include <string>

// Takes the only certificate that is present, or asks the user, and logs in where the certificate's
// kind demands it: in the cloud, whose identifier in use is told by the login, or by a scan. The
// identifier goes to `certId` and to g_currentCertId, the label to g_pickedCertLabel. Certificates
// of the device for scans are left out but for its placeholder.
//
// 0, -1 for a list without "||" and for a dialog that was cancelled, -3050 for a failed login, with
// nothing selected and the label empty, or a code of CAppOpt::GetUserList or GetLastLoginCertID. 0
// with `certId` left alone: only certificates that are left out, or a dialog that couldn't be
// shown. 0 with both emptied: a service of the cloud that can't be asked for the identifier in use.
int ChooseCertificate(std::string& certId);

// The selected certificate; where none is selected, the one that ChooseCertificate gives, which
// then is the selection. 0 or a code of ChooseCertificate, with `certId` left alone.
int TakeCertificate(std::string& certId);

// The work of the export of this name; its contract stands in TesmarkOpt.h.
namespace session {

int GetCertType(char* type);

}  // namespace session
