// Module.h - shared libraries, loaded by path or found among those that the process has loaded.
#pragma once

#include <string>

namespace platform {

using ModuleHandle = void*;

// Null on failure. A path without a separator is what LoadLibraryA makes of it on Windows, and
// elsewhere names a file of the working directory.
ModuleHandle LoadModule(const char* path);
void FreeModule(ModuleHandle module);
// Null if the module doesn't export `name`.
void* FindSymbol(ModuleHandle module, const char* name);

// The full path of the loaded module that is this product's library with the name `stem`
// ("TesmarkOpt" or "TesmarkOpt_x64"), told by its file's name; at most 259 bytes. Empty if no such
// module is loaded. Windows finds it whatever the case of its letters.
std::string LoadedModulePath(const char* stem);

// The file name of a shared library of this platform: "KVLAppCOM" gives "KVLAppCOM.dll" or
// "libKVLAppCOM.so".
std::string ModuleFileName(const char* stem);

// The same below an installation folder's "Program" folder, with the separators of the platform
// and one in front: "\Program\KVLAppCOM.dll" or "/Program/libKVLAppCOM.so".
std::string ModuleBelowInstallFolder(const char* stem);

// The calling thread's last error as the system numbers it.
void ClearLastError();
int LastError();

}  // namespace platform
