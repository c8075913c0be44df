// StoredText.h - values of the store that are longer than a setting of the product may be.
#pragma once

#include <string>

#include "platform/RegistryStore.h"

// A value of any length: its bytes as they are, its text up to the first zero byte, or the path in
// it. Text and path come in UTF-8. Empty if it is absent or `key` is null.
std::string StoredBytes(platform::RegistryKey key, const char* name);
std::string StoredText(platform::RegistryKey key, const char* name);
std::string StoredPath(platform::RegistryKey key, const char* name);
