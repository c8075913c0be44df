// ServiceStore.h - the certificate service's own values in the store: HKEY_LOCAL_MACHINE,
// software\Velmora\certservice.
#pragma once

#include <string>

// The file system's bytes up to the first zero byte; empty if the value is absent.
std::string ReadStorePath(const char* name);
// 0 if the value is absent or isn't a number.
unsigned int ReadStoreNumber(const char* name);
