#include "components/timestamp/AuthorityClient.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <memory>

#include "platform/CurlLibrary.h"

namespace {

constexpr char kRequestHead[] = "Content-Type: application/timestamp-query";
constexpr std::string_view kResponseType = "application/timestamp-reply";

// What a server sends, as libcurl hands it over.
struct Arrival {
    std::string body;
    int status = 0;
    std::string type;
    bool tooLarge = false;
};

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::string_view Trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == text.npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
}

std::size_t TakeBody(const char* data, std::size_t size, std::size_t count, void* target) {
    auto& arrival = *static_cast<Arrival*>(target);
    arrival.tooLarge = size * count > kLargestResponse - arrival.body.size();
    if (arrival.tooLarge) return 0;
    arrival.body.append(data, size * count);
    return size * count;
}

// A status line begins the head of one more answer: after a redirect, or a question for a password.
std::size_t TakeHead(const char* data, std::size_t size, std::size_t count, void* target) {
    auto& arrival = *static_cast<Arrival*>(target);
    const std::string_view line(data, size * count);
    if (line.starts_with("HTTP/")) {
        const std::string status(line.substr(std::min(line.find(' '), line.size())));
        arrival = Arrival{{}, std::atoi(status.c_str()), {}, false};
    }
    const std::size_t colon = line.find(':');
    if (colon != line.npos && LowerCase(line.substr(0, colon)) == "content-type") {
        const std::string_view value = line.substr(colon + 1);
        arrival.type = LowerCase(Trimmed(value.substr(0, value.find(';'))));
    }
    return size * count;
}

// Sets option after option, until one fails.
class Options {
public:
    Options(const platform::CurlLibrary& curl, CURL* handle) : m_curl(curl), m_handle(handle) {}

    template <typename Value>
    Options& Set(CURLoption option, Value value) {
        if (m_result == CURLE_OK) m_result = m_curl.setOption(m_handle, option, value);
        return *this;
    }
    Options& SetText(CURLoption option, const std::string& text) {
        return text.empty() ? *this : Set(option, text.c_str());
    }
    CURLcode Result() const { return m_result; }

private:
    const platform::CurlLibrary& m_curl;
    CURL* m_handle;
    CURLcode m_result = CURLE_OK;
};

void SetAddress(Options& options, const TimeStampSettings& settings, const std::string& url) {
    const bool encrypted = LowerCase(url.substr(0, 8)) == "https://";
    options.Set(CURLOPT_URL, url.c_str())
        .Set(CURLOPT_PROTOCOLS_STR, "http,https")
        .Set(CURLOPT_REDIR_PROTOCOLS_STR, encrypted ? "https" : "http,https")
        .Set(CURLOPT_FOLLOWLOCATION, 1L)
        .Set(CURLOPT_MAXREDIRS, kMostRedirects)
        .Set(CURLOPT_POSTREDIR, static_cast<long>(CURL_REDIR_POST_ALL))
        .SetText(CURLOPT_PROXY, settings.proxy)
        .Set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    if (settings.user.empty()) return;
    options.Set(CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST))
        .SetText(CURLOPT_USERNAME, settings.user)
        .SetText(CURLOPT_PASSWORD, settings.password);
}

void SetSecurity(Options& options, const TimeStampSettings& settings) {
    options.Set(CURLOPT_SSL_VERIFYPEER, 1L)
        .Set(CURLOPT_SSL_VERIFYHOST, 2L)
        .Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2))
        .SetText(CURLOPT_CAINFO, settings.caFile);
    // Where OpenSSL brings no certificates of its own.
    if (settings.caFile.empty()) {
        options.Set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA));
    }
}

void SetLimits(Options& options, const TimeStampSettings& settings) {
    // A signal for the end of a look-up would be the host's to handle.
    options.Set(CURLOPT_NOSIGNAL, 1L)
        .Set(CURLOPT_CONNECTTIMEOUT_MS, settings.connectTimeoutMs)
        .Set(CURLOPT_TIMEOUT_MS, settings.timeoutMs);
}

// libcurl doesn't fill its buffer at every failure.
std::string FaultOf(const platform::CurlLibrary& curl, CURLcode result, const Arrival& arrival,
                    const char* told) {
    if (arrival.tooLarge) {
        return "the answer has more than " + std::to_string(kLargestResponse) + " bytes";
    }
    if (*told == '\0' && curl.errorText != nullptr) told = curl.errorText(result);
    return std::string(told) + " (libcurl error " + std::to_string(result) + ")";
}

std::string FaultOf(const Arrival& arrival) {
    if (arrival.status != 200) return "HTTP status " + std::to_string(arrival.status);
    if (arrival.type == kResponseType) return {};
    if (arrival.type.empty()) return "the answer's type isn't told";
    return "the answer is " + arrival.type + ", not " + std::string(kResponseType);
}

std::string Perform(const platform::CurlLibrary& curl, CURL* handle, Options& options,
                    std::string_view request, Arrival& arrival) {
    char told[CURL_ERROR_SIZE] = {};
    char head[sizeof kRequestHead];
    std::copy(std::begin(kRequestHead), std::end(kRequestHead), head);
    curl_slist heads{head, nullptr};
    options.Set(CURLOPT_ERRORBUFFER, told)
        .Set(CURLOPT_HTTPHEADER, &heads)
        .Set(CURLOPT_POSTFIELDS, request.data())
        .Set(CURLOPT_POSTFIELDSIZE, static_cast<long>(request.size()))
        .Set(CURLOPT_WRITEFUNCTION, &TakeBody)
        .Set(CURLOPT_WRITEDATA, &arrival)
        .Set(CURLOPT_HEADERFUNCTION, &TakeHead)
        .Set(CURLOPT_HEADERDATA, &arrival);
    if (options.Result() != CURLE_OK) {
        return FaultOf(curl, options.Result(), arrival, told);
    }
    const CURLcode result = curl.perform(handle);
    return result != CURLE_OK ? FaultOf(curl, result, arrival, told) : FaultOf(arrival);
}

}  // namespace

bool AskAuthority(const TimeStampSettings& settings, const std::string& url,
                  std::string_view request, std::string& response, std::string& fault) {
    const platform::CurlLibrary& curl = platform::GetCurlLibrary();
    fault = "libcurl can't be had";
    if (curl.globalInit == nullptr) return false;
    // Once for all: its counterpart is never called.
    static const CURLcode started = curl.globalInit(CURL_GLOBAL_ALL);
    if (started != CURLE_OK) return false;
    const std::unique_ptr<CURL, decltype(curl.cleanup)> handle(curl.init(), curl.cleanup);
    if (!handle) return false;
    Options options(curl, handle.get());
    SetAddress(options, settings, url);
    SetSecurity(options, settings);
    SetLimits(options, settings);
    Arrival arrival;
    fault = Perform(curl, handle.get(), options, request, arrival);
    if (fault.empty()) response = std::move(arrival.body);
    return fault.empty();
}
