// Settings.h - the settings that the product and its components read, and their values.
#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string>

#include "platform/RegistryStore.h"

enum class SettingType {
    kNumber,       // 32 bits
    kText,         // at most 199 bytes of GBK
    kAddress,      // the same; a password in it is for nobody to see
    kLongText,     // GBK of any length
    kLongAddress,  // the same, of one address or several; as kAddress
    kSecret,       // GBK of any length, for nobody to see
    kFile,         // a path, in the file system's bytes
    kFiles,        // several of those with ";" between them
    kFolder        // as kFile
};

struct Setting {
    const char* name;  // what `tesmark config` calls it
    platform::RegistryRoot root;
    const char* key;
    const char* value;  // the value's name in the key; "" is the key's own
    SettingType type;
    const char* absent;                                               // what holds without it
    const char* meaning;                                              // a clause
    unsigned int largest = std::numeric_limits<unsigned int>::max();  // of a number
};

std::span<const Setting> KnownSettings();

// Names compare without regard to case. Throws a usage Failure that lists the names.
const Setting& FindSetting(const std::string& name);

// HKEY_LOCAL_MACHINE\software\..., for messages.
std::string SettingPlace(const Setting& setting);
// What holds the setting: a file, or a key of the registry where the store is that.
struct SettingHolder {
    std::string name;  // empty if the system tells no folder for the file
    bool there;
};
SettingHolder HolderOf(const Setting& setting);

// Why what stands in the holder isn't read, or not all of it: a sentence that names it; empty if
// nothing is wrong, or if it isn't there.
std::string FaultOfHolder(const Setting& setting);

// As text (UTF-8; a path as in PathText.h); none if it isn't set or can't be read as its type.
std::optional<std::string> ReadSetting(const Setting& setting);

// The same as it may be shown: of a secret only that it is set, an address with "***" in the place
// of its password.
std::optional<std::string> ShownSetting(const Setting& setting);

// It is set, to what can't be read as its type: whoever needs it takes the default.
bool IsUnreadable(const Setting& setting);

// True for a text (UTF-8) that the library, which reads 199 bytes of GBK, takes for none.
bool IsBeyondReading(const Setting& setting, const std::string& text);

// One of its paths that isn't absolute, which means another place in each working folder; empty if
// there is none, and for what is no path.
std::string RelativePathOf(const Setting& setting, const std::string& text);

// Checks `text` against the type and the largest number, and that a path is absolute (usage
// Failure) and leads to no folder in a file's place, nor the other way round (file Failure); what
// isn't there may come. Then stores it. A store that can't be written is a setup Failure, and so is
// one that doesn't give the value back.
void WriteSetting(const Setting& setting, const std::string& text);

// False if it wasn't set. A store that can't be written is a setup Failure.
bool RemoveSetting(const Setting& setting);
