// RegistryStore.h - the persistent store of settings: the registry on Windows, two .reg files
// elsewhere (machine.reg for LocalMachine and ClassesRoot, user.reg for CurrentUser).
#pragma once

#include <cstddef>
#include <string>

namespace platform {

enum class RegistryRoot { LocalMachine, CurrentUser, ClassesRoot };
// AllAccess: read and write (0xF003F). Read64, Read32: reading, in the 64-bit or the 32-bit view
// (0x20119, 0x20219); elsewhere than on Windows the views are one.
enum class RegistryAccess { AllAccess, Read64, Read32 };

struct RegistryKeyObject;
using RegistryKey = RegistryKeyObject*;

// The root itself as a key, below which a key can be made. Never null, and closing it is harmless.
RegistryKey RegistryRootKey(RegistryRoot root);

// Null if the key isn't there or can't be opened with that access. `path` is the key's path with
// backslashes, a closing one allowed, compared without regard to case; GBK. Close what comes back.
RegistryKey OpenRegistryKey(RegistryRoot root, const char* path, RegistryAccess access);

// Opens or makes `path` below `parent`, with all access. Null on failure.
RegistryKey CreateRegistryKey(RegistryKey parent, const char* path);

void CloseRegistryKey(RegistryKey key);

// Reads the raw bytes of value `name` ("" is the key's default value) into `data`, whatever its
// type. `*size` is the capacity before and the value's size after the call. False, with `data`
// untouched, if the value is absent or larger than the capacity; `*size` then tells the size
// needed, or 0. A null `data` asks for the size. A string is GBK and counts with the terminator
// stored with it.
bool QueryRegistryValue(RegistryKey key, const char* name, void* data, std::size_t* size);

// The same for a string that is a path: the file system's bytes, not converted.
bool QueryRegistryPath(RegistryKey key, const char* name, void* data, std::size_t* size);

// Stores `text` (GBK) as a string with its terminator. False if it can't be written.
bool SetRegistryString(RegistryKey key, const char* name, const std::string& text);

// Stores a 32-bit number. False if it can't be written.
bool SetRegistryNumber(RegistryKey key, const char* name, unsigned int number);

// Stores `path`, the file system's bytes, as a string with its terminator.
bool SetRegistryPath(RegistryKey key, const char* name, const std::string& path);

// Removes one value. False if it wasn't there or can't be removed.
bool DeleteRegistryValue(RegistryKey key, const char* name);

}  // namespace platform
