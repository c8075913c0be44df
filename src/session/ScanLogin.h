// ScanLogin.h - the login on the device for scans by phone.
#pragma once

#include <string>

// The request for a scan in the name of g_appId, as Base64: the text that stands in the place of a
// PIN. Reads the setting `appid` into g_appId while that is empty.
std::string BuildScanLoginPin();

// Ends an earlier scan's login and waits for a new one. 0 or -3050, whose cause stands in the log.
int LoginByScan(const std::string& certId);

// The work of the exports of these names; their contracts stand in TesmarkOpt.h.
namespace session {

int SetAppId(const unsigned char* appId, int appIdLen);
int PZMLogin();

}  // namespace session
