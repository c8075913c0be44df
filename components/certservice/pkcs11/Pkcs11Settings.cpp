#include "components/certservice/pkcs11/Pkcs11Settings.h"

#include <algorithm>
#include <string_view>

#include "components/certservice/ServiceStore.h"

namespace {

std::vector<std::string> SplitPaths(std::string_view paths) {
    std::vector<std::string> result;
    while (!paths.empty()) {
        const std::string_view path = paths.substr(0, paths.find(';'));
        paths.remove_prefix(std::min(path.size() + 1, paths.size()));
        if (!path.empty() && std::find(result.begin(), result.end(), path) == result.end())
            result.emplace_back(path);
    }
    return result;
}

}  // namespace

Pkcs11Settings ReadPkcs11Settings() {
    Pkcs11Settings settings;
    settings.modules = SplitPaths(ReadStorePath("Pkcs11Modules"));
    settings.sm2Mechanism = ReadStoreNumber("Pkcs11Sm2Mechanism");
    settings.sm2KeyType = ReadStoreNumber("Pkcs11Sm2KeyType");
    return settings;
}
