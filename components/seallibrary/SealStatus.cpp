#include "components/seallibrary/SealStatus.h"

#include "components/http/Address.h"
#include "components/http/Exchange.h"
#include "components/http/SealServiceSettings.h"
#include "components/seallibrary/SealCodes.h"
#include "components/text/RecordText.h"
#include "foundation/Text.h"
#include "foundation/XmlDocument.h"

namespace {

constexpr std::size_t kLargestAnswer = 64u << 10;
constexpr int kOk = 200;

std::string MakeRequest(std::string_view number, std::string_view hash) {
    XmlDocument document;
    document.AddElement("ROOT", "");
    document.EnterElement();
    document.AddElement("REQUESTTYPE", "GetSealStatus");
    document.AddElement("SEALNUM", std::string(number).c_str());
    document.AddElement("SEALHASH", std::string(hash).c_str());
    return AnsiToUtf8(document.GetText());
}

// Forward, as all of the service's answers are read; empty if it isn't there.
std::string ElementText(XmlDocument& document, const char* name) {
    return document.FindElement(name) ? document.GetElementText() : std::string();
}

struct Word {
    const char* text;
    int code;
};
constexpr Word kWords[] = {
    {"valid", kSealOk},
    {"unknown", kSealStatusUnknown},
    {"suspended", kSealStatusSuspended},
    {"replaced", kSealStatusReplaced},
};

int CodeOfAnswer(const std::string& answer, std::string& fault) {
    XmlDocument document;
    fault = "the answer is none of a seal service";
    if (!document.Load(Utf8ToAnsi(answer).c_str()) || !document.FindElement("ROOT"))
        return kSealStatusBadAnswer;
    document.EnterElement();
    const std::string status = ElementText(document, "STATUSCODE");
    if (status != "200") {
        fault = "the service refused with the status " + AnsiToUtf8(status);
        return kSealStatusBadAnswer;
    }
    const std::string word = ElementText(document, "SEALSTATUS");
    for (const Word& known : kWords) {
        if (word != known.text) continue;
        fault = known.code == kSealOk ? "" : "the seal is " + word;
        return known.code;
    }
    return kSealStatusBadAnswer;
}

int CodeOfOutcome(const ExchangeOutcome& outcome, std::string& fault) {
    fault = outcome.fault;
    switch (outcome.end) {
        case ExchangeEnd::kNoLibrary:
        case ExchangeEnd::kFailed: return kSealStatusUnreachable;
        case ExchangeEnd::kTooLarge:
        case ExchangeEnd::kHeadTooLarge: return kSealStatusBadAnswer;
        case ExchangeEnd::kAnswered: break;
    }
    if (outcome.status != kOk || outcome.isEncoded) {
        fault = outcome.isEncoded ? "the answer is compressed"
                                  : "HTTP status " + std::to_string(outcome.status);
        return kSealStatusBadAnswer;
    }
    return CodeOfAnswer(outcome.body, fault);
}

int Ask(std::string_view address, std::string_view number, std::string_view hash,
        std::string& fault) {
    if (address.empty()) return kSealNoStatusService;
    if (number.empty() || hash.empty()) return kSealBadArgument;
    if (number.size() > kMaxStatusField || hash.size() > kMaxStatusField) return kSealTooLarge;
    const std::string url = AnsiToUtf8(address);
    fault = FaultOfAddress(url);
    if (!fault.empty()) return kSealStatusBadAddress;
    const std::string request = MakeRequest(number, hash);
    return CodeOfOutcome(PostRequest(ReadSealServiceSettings(),
                                     {.url = url,
                                      .headers = {"EncryptType: 0", "RequestContent: XML",
                                                  "Content-Type: text/xml; charset=utf-8"},
                                      .body = request,
                                      .largestAnswer = kLargestAnswer}),
                         fault);
}

}  // namespace

int AskSealStatus(std::string_view address, std::string_view number, std::string_view hash,
                  std::string& fault) {
    std::string told;
    const int code = Ask(address, number, hash, told);
    fault = RecordText(told);
    return code;
}
