// The certificate service's user list: every entry comes out of the text as it stands there, and
// the entries put together again are no longer than the text.

#include "bridge/UserList.h"

#include <cstdint>

#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view list(reinterpret_cast<const char*>(data), size);
    std::string_view rest = list;
    std::string together;
    while (const auto entry = TakeEntry(rest)) {
        REQUIRE(entry->label.find("||") == std::string::npos);
        REQUIRE(entry->certId.find("&&&") == std::string::npos);
        AppendEntry(*entry, together);
        REQUIRE(list.substr(0, together.size()) == together);
    }
    REQUIRE(together.size() + rest.size() == list.size());
    return 0;
}
