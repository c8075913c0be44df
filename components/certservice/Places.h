// Places.h - where the certificate service's folders are: its settings, or their defaults.
#pragma once

#include <string>

constexpr char kCertServiceSettingsKey[] = "software\\Velmora\\certservice\\";

// Paths are the file system's bytes, without a separator at their end. Each is the setting of that
// name (KeyFolder, TrustFolder, CaFolder) under HKEY_LOCAL_MACHINE and kCertServiceSettingsKey, if
// it is there and not empty, else the default: "keys", "trust" and "ca" below VELMORA_PREFIX where
// that is set; else "velmora/keys" and "velmora/ca" in the user's data folder, and
// /etc/velmora/trust. Read afresh at each call; empty if the system tells no folder.
std::string KeyFolderPath();
std::string TrustFolderPath();
std::string CaFolderPath();
