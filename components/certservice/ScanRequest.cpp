#include "components/certservice/ScanRequest.h"

#include <array>

#include "components/certservice/Base64Text.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/StrictJson.h"
#include "foundation/Text.h"

namespace {

struct Member {
    const char* name;
    const char* value;  // null: any
};

constexpr auto kMembers = std::to_array<Member>({{"appid", nullptr},
                                                 {"cardid", ""},
                                                 {"cardimage", ""},
                                                 {"cardname", ""},
                                                 {"showselectcertwnd", "1"},
                                                 {"type", "1"}});

// Encoded again it has to be the same: white space is skipped by the decoder, and the bits behind
// the last byte are not looked at.
bool DecodeStrictly(std::string_view text, std::string& data) {
    return text.size() <= kLongestScanRequest && DecodeBase64Text(text, data) &&
           Base64Encode(data) == text;
}

int CheckMembers(const Json::Value& object) {
    for (const Member& member : kMembers) {
        if (!object.isMember(member.name)) return kServiceScanMemberMissing;
    }
    for (const Member& member : kMembers) {
        if (!object[member.name].isString()) return kServiceScanMemberKind;
    }
    if (object.size() != kMembers.size()) return kServiceScanMemberSurplus;
    for (const Member& member : kMembers) {
        if (member.value && object[member.name].asString() != member.value) {
            return kServiceScanMemberValue;
        }
    }
    return kServiceOk;
}

}  // namespace

int ReadScanRequest(std::string_view pin, ScanRequest& request) {
    std::string json;
    Json::Value object;
    if (!DecodeStrictly(pin, json)) return kServiceScanNotBase64;
    if (!ReadJsonObject(json, object)) return kServiceScanNotJson;
    if (const int code = CheckMembers(object)) return code;
    request.appId = object["appid"].asString();
    return kServiceOk;
}
