#include "components/timestamp/ResponseCheck.h"

#include <openssl/pkcs7.h>
#include <openssl/ts.h>

#include "components/crypto/ErrorMark.h"
#include "components/crypto/Handles.h"

namespace {

using RequestHandle = OpenSslHandle<TS_REQ, TS_REQ_free>;
using StatusHandle = OpenSslHandle<TS_STATUS_INFO, TS_STATUS_INFO_free>;
using TokenHandle = OpenSslHandle<PKCS7, PKCS7_free>;
using StampHandle = OpenSslHandle<TS_TST_INFO, TS_TST_INFO_free>;
using SignedHandle = OpenSslHandle<PKCS7_SIGNED, PKCS7_SIGNED_free>;

// signedData of GM/T 0010, which a national authority may put in the place of RFC 5652's.
constexpr char kNationalSignedData[] = "1.2.156.10197.6.1.4.2.2";

constexpr struct {
    int bit;
    const char* name;
} kFailures[] = {{0, "badAlg"},
                 {2, "badRequest"},
                 {5, "badDataFormat"},
                 {14, "timeNotAvailable"},
                 {15, "unacceptedPolicy"},
                 {16, "unacceptedExtension"},
                 {17, "addInfoNotAvailable"},
                 {25, "systemFailure"}};

constexpr const char* kStatuses[] = {"granted", "grantedWithMods",   "rejection",
                                     "waiting", "revocationWarning", "revocationNotification"};

// The whole of `der`, or null.
template <typename Handle, auto Decode>
Handle Parsed(std::string_view der) {
    const auto* const begin = reinterpret_cast<const unsigned char*>(der.data());
    const unsigned char* at = begin;
    Handle object(Decode(nullptr, &at, static_cast<long>(der.size())));
    return at == begin + der.size() ? std::move(object) : nullptr;
}

RequestHandle ParseRequest(std::string_view der) {
    RequestHandle request = Parsed<RequestHandle, d2i_TS_REQ>(der);
    return request && TS_REQ_get_msg_imprint(request.get()) != nullptr ? std::move(request)
                                                                       : nullptr;
}

std::string_view Octets(const ASN1_STRING* text) {
    return {reinterpret_cast<const char*>(ASN1_STRING_get0_data(text)),
            static_cast<std::size_t>(ASN1_STRING_length(text))};
}

void FreeParts(ASN1_SEQUENCE_ANY* parts) { sk_ASN1_TYPE_pop_free(parts, ASN1_TYPE_free); }
using PartsHandle = OpenSslHandle<ASN1_SEQUENCE_ANY, FreeParts>;

struct Response {
    StatusHandle status;
    TokenHandle token;
};

// One part of a sequence that is itself one; empty for anything else.
std::string_view SequenceAt(const ASN1_SEQUENCE_ANY* parts, int index) {
    const ASN1_TYPE* const part = sk_ASN1_TYPE_value(parts, index);
    return part->type == V_ASN1_SEQUENCE ? Octets(part->value.sequence) : std::string_view();
}

// OpenSSL's own reading of the whole knows only tokens of RFC 5652.
bool ParseResponse(std::string_view der, Response& response) {
    const PartsHandle parts = Parsed<PartsHandle, d2i_ASN1_SEQUENCE_ANY>(der);
    const int count = parts ? sk_ASN1_TYPE_num(parts.get()) : 0;
    if (count != 1 && count != 2) return false;
    response.status = Parsed<StatusHandle, d2i_TS_STATUS_INFO>(SequenceAt(parts.get(), 0));
    if (!response.status || count == 1) return response.status != nullptr;
    response.token = Parsed<TokenHandle, d2i_PKCS7>(SequenceAt(parts.get(), 1));
    return response.token != nullptr;
}

StampHandle StampOf(const PKCS7_SIGNED* data) {
    const PKCS7* const content = data != nullptr ? data->contents : nullptr;
    if (content == nullptr || OBJ_obj2nid(content->type) != NID_id_smime_ct_TSTInfo) return nullptr;
    const ASN1_TYPE* const value = content->d.other;
    if (value == nullptr || value->type != V_ASN1_OCTET_STRING) return nullptr;
    return Parsed<StampHandle, d2i_TS_TST_INFO>(Octets(value->value.octet_string));
}

bool HasType(const PKCS7* token, const char* type) {
    const ObjectIdHandle wanted(OBJ_txt2obj(type, 1));
    return wanted && OBJ_cmp(token->type, wanted.get()) == 0;
}

StampHandle StampOf(const PKCS7* token) {
    if (OBJ_obj2nid(token->type) == NID_pkcs7_signed) return StampOf(token->d.sign);
    const ASN1_TYPE* const value = token->d.other;
    if (!HasType(token, kNationalSignedData) || value == nullptr || value->type != V_ASN1_SEQUENCE)
        return nullptr;
    return StampOf(Parsed<SignedHandle, d2i_PKCS7_SIGNED>(Octets(value->value.sequence)).get());
}

std::string StatusName(long status) {
    const bool known = status >= 0 && status < static_cast<long>(std::size(kStatuses));
    return known ? kStatuses[status] : "status " + std::to_string(status);
}

// What the authority says of a refusal.
std::string Reasons(const TS_STATUS_INFO* info) {
    std::string reasons;
    const ASN1_BIT_STRING* const failures = TS_STATUS_INFO_get0_failure_info(info);
    for (const auto& failure : kFailures) {
        if (failures != nullptr && ASN1_BIT_STRING_get_bit(failures, failure.bit) == 1) {
            reasons += std::string(reasons.empty() ? "" : ", ") + failure.name;
        }
    }
    const STACK_OF(ASN1_UTF8STRING)* const texts = TS_STATUS_INFO_get0_text(info);
    for (int i = 0; i < sk_ASN1_UTF8STRING_num(texts); ++i) {
        reasons += (reasons.empty() ? "\"" : ", \"") +
                   std::string(Octets(sk_ASN1_UTF8STRING_value(texts, i))) + "\"";
    }
    return reasons.empty() ? reasons : ": " + reasons;
}

bool SameImprint(TS_MSG_IMPRINT* left, TS_MSG_IMPRINT* right) {
    const ASN1_OBJECT* leftHash = nullptr;
    const ASN1_OBJECT* rightHash = nullptr;
    X509_ALGOR_get0(&leftHash, nullptr, nullptr, TS_MSG_IMPRINT_get_algo(left));
    X509_ALGOR_get0(&rightHash, nullptr, nullptr, TS_MSG_IMPRINT_get_algo(right));
    return OBJ_cmp(leftHash, rightHash) == 0 &&
           Octets(TS_MSG_IMPRINT_get_msg(left)) == Octets(TS_MSG_IMPRINT_get_msg(right));
}

std::string FaultOfStamp(TS_REQ* request, TS_TST_INFO* stamp) {
    if (TS_TST_INFO_get_version(stamp) != 1) return "the token's version isn't 1";
    if (!SameImprint(TS_REQ_get_msg_imprint(request), TS_TST_INFO_get_msg_imprint(stamp))) {
        return "the token is for another message imprint";
    }
    const ASN1_INTEGER* const nonce = TS_REQ_get_nonce(request);
    const ASN1_INTEGER* const answered = TS_TST_INFO_get_nonce(stamp);
    if (nonce != nullptr && (answered == nullptr || ASN1_INTEGER_cmp(nonce, answered) != 0)) {
        return answered == nullptr ? "the token has no nonce" : "the token has another nonce";
    }
    const ASN1_OBJECT* const policy = TS_REQ_get_policy_id(request);
    if (policy != nullptr && OBJ_cmp(policy, TS_TST_INFO_get_policy_id(stamp)) != 0) {
        return "the token follows another policy";
    }
    return {};
}

std::string HexOf(const ASN1_INTEGER* number) {
    const BignumHandle value(ASN1_INTEGER_to_BN(number, nullptr));
    const std::string hex = value ? TakeText(BN_bn2hex(value.get())) : std::string();
    return hex.empty() ? "?" : hex;
}

std::string Summary(const std::string& status, const TS_TST_INFO* stamp) {
    return status + ", serial number " + HexOf(TS_TST_INFO_get_serial(stamp)) + ", time " +
           std::string(Octets(TS_TST_INFO_get_time(stamp)));
}

}  // namespace

bool IsTimeStampRequest(std::string_view der) {
    const ErrorMark mark;
    return ParseRequest(der) != nullptr;
}

ResponseVerdict CheckResponse(std::string_view request, std::string_view response) {
    const ErrorMark mark;
    const RequestHandle asked = ParseRequest(request);
    if (!asked) return {"there is no time-stamp request", {}};
    Response answer;
    if (!ParseResponse(response, answer)) return {"the answer is no time-stamp response", {}};
    const long code = ASN1_INTEGER_get(TS_STATUS_INFO_get0_status(answer.status.get()));
    const std::string status = StatusName(code);
    if (code != TS_STATUS_GRANTED && code != TS_STATUS_GRANTED_WITH_MODS) {
        return {"refused by " + status + Reasons(answer.status.get()), {}};
    }
    if (!answer.token) return {status + " without a token", {}};
    const StampHandle stamp = StampOf(answer.token.get());
    if (!stamp) return {"the token can't be read", {}};
    const std::string fault = FaultOfStamp(asked.get(), stamp.get());
    if (!fault.empty()) return {fault, {}};
    return {{}, Summary(status, stamp.get())};
}
