#include "components/http/StoredText.h"

#include <string_view>

#include "platform/CodePage.h"
#include "platform/Files.h"

namespace {

using platform::RegistryKey;

using Query = bool (*)(RegistryKey, const char*, void*, std::size_t*);

std::string Bytes(RegistryKey key, const char* name, Query query) {
    std::size_t size = 0;
    if (key == nullptr || !query(key, name, nullptr, &size)) return {};
    std::string bytes(size, '\0');
    if (!query(key, name, bytes.data(), &size)) return {};
    return bytes;
}

std::string_view ToFirstZero(std::string_view bytes) { return bytes.substr(0, bytes.find('\0')); }

}  // namespace

std::string StoredBytes(RegistryKey key, const char* name) {
    return Bytes(key, name, platform::QueryRegistryValue);
}

std::string StoredText(RegistryKey key, const char* name) {
    return platform::Utf8FromAnsi(ToFirstZero(StoredBytes(key, name)));
}

std::string StoredPath(RegistryKey key, const char* name) {
    return platform::Utf8FromPath(ToFirstZero(Bytes(key, name, platform::QueryRegistryPath)));
}
