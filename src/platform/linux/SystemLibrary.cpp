#include "platform/linux/SystemLibrary.h"

#include <dlfcn.h>

#include <string>

namespace platform {

ModuleHandle LoadSystemLibrary(const char* stem, int version) {
    const std::string name = std::string("lib") + stem + ".so." + std::to_string(version);
    return dlopen(name.c_str(), RTLD_LAZY | RTLD_LOCAL);
}

}  // namespace platform
