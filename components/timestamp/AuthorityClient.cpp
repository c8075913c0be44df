#include "components/timestamp/AuthorityClient.h"

#include "components/http/Exchange.h"

namespace {

constexpr char kRequestHead[] = "Content-Type: application/timestamp-query";
constexpr std::string_view kResponseType = "application/timestamp-reply";

std::string FaultOf(const ExchangeOutcome& outcome) {
    if (outcome.end != ExchangeEnd::kAnswered) return outcome.fault;
    if (outcome.status != 200) return "HTTP status " + std::to_string(outcome.status);
    if (outcome.type == kResponseType) return {};
    if (outcome.type.empty()) return "the answer's type isn't told";
    return "the answer is " + outcome.type + ", not " + std::string(kResponseType);
}

}  // namespace

bool AskAuthority(const TimeStampSettings& settings, const std::string& url,
                  std::string_view request, std::string& response, std::string& fault) {
    ExchangeOutcome outcome = PostRequest(settings, {.url = url,
                                                     .headers = {kRequestHead},
                                                     .body = request,
                                                     .largestAnswer = kLargestResponse,
                                                     .mostRedirects = kMostRedirects,
                                                     .user = settings.user,
                                                     .password = settings.password});
    fault = FaultOf(outcome);
    if (fault.empty()) response = std::move(outcome.body);
    return fault.empty();
}
