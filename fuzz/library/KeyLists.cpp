// The list of certificates and the list of files: every certificate has its entry, every name holds
// no end of one, and what follows the last end changes nothing.

#include "seal/KeyLists.h"

#include <cstdint>

#include "fuzz/driver/Require.h"

namespace {

std::size_t CountEnds(std::string_view list) {
    std::size_t count = 0;
    for (auto end = list.find("&&&"); end != std::string_view::npos;
         end = list.find("&&&", end + 3)) {
        ++count;
    }
    return count;
}

void RequireEntries(std::string_view list) {
    ListedCert entry;
    std::size_t position = 0;
    for (std::size_t start = 0; NextListedCert(list, position, entry); start = position) {
        REQUIRE(position >= start + 3 && position <= list.size());
        REQUIRE(list.substr(position - 3, 3) == "&&&");
        REQUIRE(entry.label.find("||") == std::string_view::npos);
        REQUIRE(entry.certId.find("&&&") == std::string_view::npos);
    }
}

void RequireUserList(std::string_view list) {
    const std::vector<CertRecord> certs = ReadUserList(list);
    REQUIRE(certs.size() <= CountEnds(list));
    for (const CertRecord& cert : certs) {
        REQUIRE(cert.scanMode == 0 || cert.scanMode == 1);
        REQUIRE(cert.CertIdText().size() <= sizeof cert.certId + sizeof cert.certName + 1);
        REQUIRE(cert.seals.empty());
    }
}

void RequireFileList(std::string_view list) {
    std::vector<std::string> names;
    REQUIRE(ReadFileList(list, names) == (CountEnds(list) > 0));
    REQUIRE(names.size() <= CountEnds(list));
    for (const std::string& name : names) {
        REQUIRE(name.find("&&&") == std::string::npos);
        REQUIRE(name.find("SEAL") != std::string::npos);
    }
    std::vector<std::string> same;
    ReadFileList(std::string(list) + (list.ends_with('&') ? "" : "ESEAL"), same);
    REQUIRE(same == names);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view list(reinterpret_cast<const char*>(data), size);
    RequireEntries(list);
    RequireUserList(list);
    RequireFileList(list);
    return 0;
}
