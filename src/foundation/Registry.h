// Registry.h - the settings of the product and the times of the revocation lists.
#pragma once

#include <optional>
#include <string>

#include "platform/RegistryStore.h"

constexpr char kSettingsKey[] = "software\\Velmora\\fenmoor\\";
constexpr char kCrlTimesKey[] = "software\\Velmora\\CrlLastUpdateTime\\";

// An open key, closed at the end of its life. `key` is set by its user after an open.
class CRegistry {
public:
    CRegistry() = default;
    explicit CRegistry(platform::RegistryKey opened) : key(opened) {}
    CRegistry(const CRegistry&) = delete;
    CRegistry& operator=(const CRegistry&) = delete;
    virtual ~CRegistry();

    // Opens or makes the key of the revocation lists' times below `key`, and puts it in its place.
    // 1 for success; 0 leaves `key` alone.
    int CreateKey();
    // Both: 1 for success, 0 for failure with `text` untouched. A value of more than 200 bytes,
    // terminator included, can't be read; a text ends at its first zero byte. GBK.
    int SetString(const char* name, const std::string& text);
    int GetString(const char* name, std::string& text);
    // The number under `name`, or `absent` (of which a value shorter than four bytes replaces only
    // the first bytes). Values longer than four bytes count as absent.
    unsigned int GetNumber(const char* name, unsigned int absent = 0);

    platform::RegistryKey key = nullptr;
};

// The product's settings, opened with all access for one reader, who reads all that he needs and
// lets go of them. A key that can't be opened is null, and all its values count as absent.
CRegistry OpenSettings();

// One setting of the product by an opening of its own: 0, or an empty text, if it is absent.
unsigned int ReadNumberSetting(const char* name);
std::string ReadTextSetting(const char* name);
