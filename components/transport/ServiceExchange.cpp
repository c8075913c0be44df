#include "components/transport/ServiceExchange.h"

#include "components/http/Address.h"
#include "components/http/Exchange.h"
#include "components/transport/TransportCodes.h"
#include "platform/CurlLibrary.h"

namespace {

int CodeOfFailure(int curlCode) {
    switch (curlCode) {
        case CURLE_URL_MALFORMAT: return kTransportBadAddress;
        case CURLE_COULDNT_RESOLVE_PROXY:
        case CURLE_COULDNT_RESOLVE_HOST: return kTransportNoHost;
        case CURLE_COULDNT_CONNECT:
        case CURLE_PROXY: return kTransportNoConnection;
        case CURLE_OPERATION_TIMEDOUT: return kTransportTimeout;
        case CURLE_SSL_CONNECT_ERROR:
        case CURLE_SSL_CIPHER: return kTransportTls;
        case CURLE_PEER_FAILED_VERIFICATION:
        case CURLE_SSL_ISSUER_ERROR:
        case CURLE_SSL_INVALIDCERTSTATUS: return kTransportUntrusted;
        case CURLE_SSL_CACERT_BADFILE: return kTransportBadSetting;
        case CURLE_PARTIAL_FILE:
        case CURLE_GOT_NOTHING:
        case CURLE_SEND_ERROR:
        case CURLE_RECV_ERROR: return kTransportBroken;
        // The address's scheme has been looked at before: this is an answer without a head.
        case CURLE_UNSUPPORTED_PROTOCOL:
        case CURLE_WEIRD_SERVER_REPLY: return kTransportBadAnswer;
        case CURLE_OUT_OF_MEMORY: return kTransportNoMemory;
        default: return kTransportFailed;
    }
}

int CodeOfStatus(int status) {
    constexpr int kUnauthorized = 401;
    constexpr int kProxyAuthenticationRequired = 407;
    if (status == kUnauthorized || status == kProxyAuthenticationRequired) {
        return kTransportNeedsLogin;
    }
    switch (status / 100) {
        case 2: return kTransportOk;
        case 3: return kTransportRedirected;
        case 4: return kTransportRefused;
        case 5: return kTransportServerError;
        default: return kTransportBadAnswer;
    }
}

int CodeOf(const ExchangeOutcome& outcome) {
    switch (outcome.end) {
        case ExchangeEnd::kNoLibrary: return kTransportNoLibrary;
        case ExchangeEnd::kTooLarge: return kTransportAnswerTooLarge;
        case ExchangeEnd::kHeadTooLarge: return kTransportBadAnswer;
        case ExchangeEnd::kFailed: return CodeOfFailure(outcome.curlCode);
        case ExchangeEnd::kAnswered: break;
    }
    const int code = CodeOfStatus(outcome.status);
    return code == kTransportOk && outcome.isEncoded ? kTransportBadAnswer : code;
}

}  // namespace

int CheckAddress(const std::string& address) {
    if (address.empty()) return kTransportNoServer;
    return FaultOfAddress(address).empty() ? kTransportOk : kTransportBadAddress;
}

int AskService(const SealServiceSettings& settings, const std::string& address,
               const std::vector<std::string>& headers, std::string_view body,
               std::string& answer) {
    answer.clear();
    if (const int code = CheckAddress(address)) return code;
    ExchangeOutcome outcome = PostRequest(settings, {.url = address,
                                                     .headers = headers,
                                                     .body = body,
                                                     .largestAnswer = settings.largestAnswer});
    const int code = CodeOf(outcome);
    if (code == kTransportOk) answer = std::move(outcome.body);
    return code;
}
