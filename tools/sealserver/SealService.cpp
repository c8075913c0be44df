#include "tools/sealserver/SealService.h"

#include "tools/sealserver/ServiceAnswer.h"
#include "tools/sealserver/ServiceRequest.h"

namespace {

constexpr int kBadRequest = 400;
constexpr int kSuspended = 403;
constexpr int kUnknownSeal = 404;
constexpr int kFailed = 500;

ServiceReply Refusal(const std::string& what, int status, const std::string& message) {
    return {AnswerRefusal(status, message), what + " " + std::to_string(status)};
}

ServiceReply SealList(SealStore& store, const ServiceRequest& request) {
    std::vector<std::pair<std::string, std::string>> usable;
    if (const auto certificate = store.FindCertificate(request.serial, request.name)) {
        for (const StoredSeal& seal : store.Seals(certificate->id))
            if (!seal.suspended) usable.emplace_back(seal.number, seal.name);
    }
    return {AnswerSealList(usable), "GetSealList 200 " + std::to_string(usable.size())};
}

ServiceReply AppointedSeal(SealStore& store, const ServiceRequest& request) {
    constexpr char kName[] = "GetAppointedSeal";
    const auto certificate = store.FindCertificate(request.serial, request.name);
    if (!certificate) return Refusal(kName, kUnknownSeal, "没有找到该证书的印章");
    const auto seal = store.FindSeal(certificate->id, request.sealNumber);
    if (!seal) return Refusal(kName, kUnknownSeal, "没有找到该编号的印章");
    if (seal->suspended) return Refusal(kName, kSuspended, "印章已停用");
    return {AnswerSeal(seal->file), std::string(kName) + " 200"};
}

ServiceReply StatusOf(SealStore& store, const ServiceRequest& request) {
    const std::string status = SealStatusText(store.StatusOf(request.sealNumber, request.sealHash));
    return {AnswerSealStatus(status), "GetSealStatus 200 " + status};
}

ServiceReply Dispatch(SealStore& store, const ServiceRequest& request) {
    switch (request.kind) {
        case RequestKind::kHello: return {AnswerHello(), "Hello 200"};
        case RequestKind::kSealList: return SealList(store, request);
        case RequestKind::kAppointedSeal: return AppointedSeal(store, request);
        case RequestKind::kSealStatus: return StatusOf(store, request);
    }
    return Refusal("-", kFailed, "");
}

}  // namespace

ServiceReply SealService::Answer(std::string_view encryptType, std::string_view requestContent,
                                 std::string_view body) {
    if (encryptType != "0" || requestContent != "XML")
        return Refusal("-", kBadRequest, "请求头EncryptType或RequestContent不正确");
    ServiceRequest request;
    RequestFault fault;
    if (!ReadServiceRequest(body, request, fault)) return Refusal("-", fault.status, fault.message);
    try {
        return Dispatch(m_store, request);
    } catch (const DatabaseFailure&) {
        return Refusal("database", kFailed, "服务器内部错误");
    }
}
