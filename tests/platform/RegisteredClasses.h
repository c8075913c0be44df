// RegisteredClasses.h - the stand-in engine's classes in the registry store, for one test.
#pragma once

#include <string>

#include "platform/Automation.h"
#include "platform/RegistryStore.h"

inline constexpr char kEngineClass[] = "{2D8C4E07-91BA-4F36-A4D2-7C16E05B3F9A}";
// Of the same library; on Windows its objects have no IOleObject, and give numbers for texts.
inline constexpr char kPlainClass[] = "{0F9E1B55-6A4C-4E58-8D0B-3A51C7D2E640}";
// On Windows its objects have no IDispatch.
inline constexpr char kMuteClass[] = "{0F9E1B55-6A4C-4E58-8D0B-3A51C7D2E641}";
// On Windows its methods fail as most engines' do: by an exception that holds the status.
inline constexpr char kExceptionClass[] = "{0F9E1B55-6A4C-4E58-8D0B-3A51C7D2E642}";

inline constexpr platform::AutomationId kEngineInterface{
    0x5A0E71C3, 0x3B28, 0x46D9, {0x8E, 0x4F, 0x12, 0xC9, 0xD6, 0xF4, 0x7A, 0x30}};
inline constexpr platform::AutomationId kOtherInterface{
    0x5A0E71C3, 0x3B28, 0x46D9, {0x8E, 0x4F, 0x12, 0xC9, 0xD6, 0xF4, 0x7A, 0x31}};

inline platform::AutomationId IdOf(const char* text) {
    platform::AutomationId id{};
    return platform::ParseClassId(text, id) ? id : platform::AutomationId{};
}

// Makes `path` the library of a class.
inline void RegisterClassAt(const char* classId, const std::string& path) {
    const std::string key = "CLSID\\" + std::string(classId) + "\\InprocServer32";
    const platform::RegistryKey made = platform::CreateRegistryKey(
        platform::RegistryRootKey(platform::RegistryRoot::ClassesRoot), key.c_str());
    platform::SetRegistryPath(made, "", path);
    platform::CloseRegistryKey(made);
}

// Takes the classes of all tests away, where no TemporaryPrefix does.
void UnregisterClasses();
