#include "platform/CurlLibrary.h"

#include "platform/linux/SystemLibrary.h"

namespace platform {

namespace {

constexpr int kVersion = 4;

template <typename Call>
bool Take(ModuleHandle module, const char* name, Call& call) {
    call = reinterpret_cast<Call>(FindSymbol(module, name));
    return call != nullptr;
}

CurlLibrary Open() {
    const ModuleHandle module = LoadSystemLibrary("curl", kVersion);
    CurlLibrary curl;
    const bool whole = module != nullptr && Take(module, "curl_global_init", curl.globalInit) &&
                       Take(module, "curl_easy_init", curl.init) &&
                       Take(module, "curl_easy_setopt", curl.setOption) &&
                       Take(module, "curl_easy_perform", curl.perform) &&
                       Take(module, "curl_easy_cleanup", curl.cleanup);
    if (!whole) return {};
    Take(module, "curl_easy_strerror", curl.errorText);
    return curl;
}

}  // namespace

// Loading libcurl costs more than all else of this library.
const CurlLibrary& GetCurlLibrary() {
    static const CurlLibrary curl = Open();
    return curl;
}

}  // namespace platform
