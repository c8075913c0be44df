#include "components/crypto/KeepLoaded.h"

#include <dlfcn.h>

void KeepLoaded(const void* function) {
    Dl_info info{};
    if (dladdr(function, &info) == 0 || info.dli_fname == nullptr) return;
    // The reference is never given back.
    dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
}
