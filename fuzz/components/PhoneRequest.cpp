// Requests for a scan: whatever comes in the place of a PIN is read or refused with one of the
// reader's own codes, and one that was read reads the same when it is written again.

#include "components/certservice/ScanRequest.h"

#include <json/writer.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "components/certservice/ServiceCodes.h"
#include "foundation/Text.h"
#include "fuzz/driver/Require.h"

namespace {

std::string Written(const std::string& appId) {
    Json::Value object(Json::objectValue);
    for (const char* name : {"cardid", "cardimage", "cardname"}) object[name] = "";
    for (const char* name : {"showselectcertwnd", "type"}) object[name] = "1";
    object["appid"] = appId;
    Json::StreamWriterBuilder builder;
    builder["emitUTF8"] = true;
    return Base64Encode(Json::writeString(builder, object));
}

void Read(std::string_view pin, int lowestCode) {
    ScanRequest request;
    const int code = ReadScanRequest(pin, request);
    if (code != kServiceOk) {
        REQUIRE(code >= lowestCode && code <= kServiceScanMemberValue);
        REQUIRE(request.appId.empty());
        return;
    }
    ScanRequest again;
    REQUIRE(ReadScanRequest(Written(request.appId), again) == kServiceOk);
    REQUIRE(again.appId == request.appId);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    Read(input, kServiceScanNotBase64);
    const std::string encoded = Base64Encode(input);
    Read(encoded,
         encoded.size() > kLongestScanRequest ? kServiceScanNotBase64 : kServiceScanNotJson);
    return 0;
}
