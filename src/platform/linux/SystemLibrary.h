// SystemLibrary.h - a library of the system that is opened when it is first needed.
#pragma once

#include "platform/Module.h"

namespace platform {

// Null if the loader doesn't find it. "curl" with version 4 is "libcurl.so.4", found where
// the loader looks for libraries.
ModuleHandle LoadSystemLibrary(const char* stem, int version);

}  // namespace platform
