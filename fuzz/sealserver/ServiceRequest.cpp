// Requests to the seal service: whatever the bytes, reading them ends, and what was read is text.

#include "tools/sealserver/ServiceRequest.h"

#include <cstdint>

#include "components/text/Utf8Text.h"
#include "fuzz/driver/Require.h"

namespace {

void RequireText(const std::string& text) {
    std::u32string characters;
    REQUIRE(text.size() <= kMaxRequestText);
    REQUIRE(Utf8Characters(text, characters));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view body(reinterpret_cast<const char*>(data), size);
    ServiceRequest request;
    RequestFault fault;
    if (!ReadServiceRequest(body, request, fault)) {
        REQUIRE(fault.status == 400 || fault.status == 413 || fault.status == 501);
        REQUIRE(!fault.message.empty());
        return 0;
    }
    for (const std::string& text :
         {request.serial, request.name, request.sealNumber, request.sealHash})
        RequireText(text);
    const bool asksForCertificate =
        request.kind == RequestKind::kSealList || request.kind == RequestKind::kAppointedSeal;
    const bool asksForSeal =
        request.kind == RequestKind::kAppointedSeal || request.kind == RequestKind::kSealStatus;
    REQUIRE(request.serial.empty() != asksForCertificate);
    REQUIRE(request.sealNumber.empty() != asksForSeal);
    REQUIRE(request.sealHash.empty() != (request.kind == RequestKind::kSealStatus));
    return 0;
}
