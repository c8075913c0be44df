// Places.h - where the certificate service's folders are: its settings, or their defaults.
#pragma once

#include <string>

constexpr char kCertServiceSettingsKey[] = "software\\Velmora\\certservice\\";

// Paths are the file system's bytes, without a separator at their end. Each is the setting of that
// name (KeyFolder, TrustFolder, CaFolder) under HKEY_LOCAL_MACHINE and kCertServiceSettingsKey, if
// it is there and not empty, else the default. Read afresh at each call; empty if the system tells
// no folder. The defaults are
// - on Windows "keys" and "ca" in the "Velmora" folder of the user's local application data, and
//   "trust" in that of all users' (%LOCALAPPDATA%, %ProgramData%);
// - elsewhere "keys", "trust" and "ca" below VELMORA_PREFIX where that is set; else "velmora/keys"
//   and "velmora/ca" in the user's data folder, and /etc/velmora/trust.
std::string KeyFolderPath();
std::string TrustFolderPath();
std::string CaFolderPath();
