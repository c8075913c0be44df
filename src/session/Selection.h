// Selection.h - the selection as a host sets it and reads it back.
#pragma once

// The work of the exports of these names; their contracts stand in TesmarkOpt.h.
namespace session {

int SetCertSeal(const unsigned char* serial, int serialLen, const unsigned char* sealBase64,
                int sealLen, int mode);
int SetContentSignCertId(const unsigned char* certId, int certIdLen);
// Checks the selected certificate before its identifier is handed out: 0 for an empty selection,
// else the result of CAppOpt::GetKeyType.
int CheckSelectedCert();

}  // namespace session
