#include "components/timestamp/Engine.h"

#include <exception>

#include "components/crypto/KeepLoaded.h"
#include "components/http/Address.h"
#include "components/text/RecordText.h"
#include "components/timestamp/AuthorityClient.h"
#include "components/timestamp/ResponseCheck.h"
#include "foundation/Logger.h"
#include "foundation/Text.h"

namespace {

constexpr std::size_t kLongestRequest = 1 << 16;

EngineRecord Record(int level, std::string_view utf8) { return {level, RecordText(utf8)}; }

// The faults of one authority after another, until one's response fits.
bool AskOne(const TimeStampSettings& settings, const std::string& url, const std::string& request,
            EngineOutcome& outcome) {
    const std::string told = ToldAddress(url) + ": ";
    std::string response;
    std::string fault;
    if (!AskAuthority(settings, url, request, response, fault)) {
        outcome.records.push_back(Record(kLogError, told + fault));
        return false;
    }
    const ResponseVerdict verdict = CheckResponse(request, response);
    if (!verdict.fault.empty()) {
        outcome.records.push_back(Record(kLogError, told + verdict.fault));
        return false;
    }
    outcome.records.push_back(Record(kLogInfo, told + verdict.summary));
    outcome.response = Base64Encode(response);
    return true;
}

}  // namespace

EngineOutcome AskAuthorities(const TimeStampSettings& settings, std::string_view requestBase64) {
    EngineOutcome outcome;
    const std::string request =
        requestBase64.size() <= kLongestRequest ? Base64Decode(requestBase64) : std::string();
    if (!IsTimeStampRequest(request)) {
        outcome.records.push_back(Record(kLogError, "the text is no time-stamp request in Base64"));
        return outcome;
    }
    if (settings.urls.empty()) {
        outcome.records.push_back(
            Record(kLogError,
                   "no authority is set: HKEY_LOCAL_MACHINE\\software\\Velmora\\"
                   "timestamp has no Url"));
        return outcome;
    }
    for (const std::string& url : settings.urls) {
        if (AskOne(settings, url, request, outcome)) break;
    }
    return outcome;
}

std::optional<std::string> CreateTimeStamp(std::string_view requestBase64) noexcept {
    try {
        // Whoever asks lets go of the engine after each time stamp, and OpenSSL is no library to be
        // loaded over and over.
        static const bool kept =
            (KeepLoaded(reinterpret_cast<const void*>(&CreateTimeStamp)), true);
        EngineOutcome outcome;
        if (kept) outcome = AskAuthorities(ReadTimeStampSettings(), requestBase64);
        for (const EngineRecord& record : outcome.records) {
            TESMARK_LOG(record.level, "[CreateTS]: %s", record.text.c_str());
        }
        return outcome.response;
    } catch (const std::exception& exception) {
        TESMARK_LOG(kLogError, "[CreateTS]: %s", exception.what());
        return std::nullopt;
    }
}
