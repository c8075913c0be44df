// The request for a scan: whatever a host's name holds, the text is the one that jsoncpp writes.

#include "session/ScanRequest.h"

#include <json/json.h>

#include <cstdint>

#include "fuzz/driver/Require.h"

namespace {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
std::string Write(const Json::Value& value) { return Json::StyledWriter().write(value); }
#pragma GCC diagnostic pop

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ScanLoginRequest request;
    request.appid.assign(reinterpret_cast<const char*>(data), size);
    Json::Value value;
    value["type"] = request.type;
    value["showselectcertwnd"] = request.showselectcertwnd;
    value["cardid"] = request.cardid;
    value["cardname"] = request.cardname;
    value["cardimage"] = request.cardimage;
    value["appid"] = request.appid;
    REQUIRE(request.StyledText() == Write(value));
    return 0;
}
