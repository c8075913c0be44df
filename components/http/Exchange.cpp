#include "components/http/Exchange.h"

#include <memory>
#include <new>

#include "components/http/AnswerHead.h"
#include "components/text/AsciiText.h"
#include "platform/CurlLibrary.h"

namespace {

// What a server sends, as libcurl hands it over.
struct Arrival {
    std::size_t largest;
    CAnswerHead head{};
    std::string body{};
    bool tooLarge = false;
    bool headTooLarge = false;
    bool noMemory = false;
};

bool TakeBody(Arrival& arrival, std::string_view data) {
    arrival.tooLarge = data.size() > arrival.largest - arrival.body.size();
    if (!arrival.tooLarge) arrival.body.append(data);
    return !arrival.tooLarge;
}

bool TakeHead(Arrival& arrival, std::string_view line) {
    arrival.headTooLarge = !arrival.head.Take(line);
    if (!arrival.headTooLarge && arrival.head.IsNew()) arrival.body.clear();
    return !arrival.headTooLarge;
}

// Nothing may be thrown through libcurl, whose frames know no exceptions. 0 ends the exchange.
template <bool (*take)(Arrival&, std::string_view)>
std::size_t Take(const char* data, std::size_t size, std::size_t count, void* target) noexcept {
    auto& arrival = *static_cast<Arrival*>(target);
    try {
        return take(arrival, {data, size * count}) ? size * count : 0;
    } catch (const std::bad_alloc&) {
        arrival.noMemory = true;
        return 0;
    }
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
    // A libcurl that doesn't know the option has nothing in its place.
    Options& Clear(CURLoption option) {
        if (m_result != CURLE_OK) return *this;
        const CURLcode result = m_curl.setOption(m_handle, option, static_cast<char*>(nullptr));
        const bool known = result != CURLE_NOT_BUILT_IN && result != CURLE_UNKNOWN_OPTION;
        if (known) m_result = result;
        return *this;
    }
    CURLcode Result() const { return m_result; }

private:
    const platform::CurlLibrary& m_curl;
    CURL* m_handle;
    CURLcode m_result = CURLE_OK;
};

// libcurl's list of header fields, without a call of libcurl.
class HeaderList {
public:
    explicit HeaderList(std::vector<std::string> headers) : m_texts(std::move(headers)) {
        // Else a large body would wait for a word of the server first.
        m_texts.emplace_back("Expect:");
        m_items.resize(m_texts.size());
        for (std::size_t i = 0; i < m_items.size(); ++i) {
            m_items[i].data = m_texts[i].data();
            m_items[i].next = i + 1 < m_items.size() ? &m_items[i + 1] : nullptr;
        }
    }
    HeaderList(const HeaderList&) = delete;
    HeaderList& operator=(const HeaderList&) = delete;

    curl_slist* First() { return m_items.data(); }

private:
    std::vector<std::string> m_texts;
    std::vector<curl_slist> m_items;
};

void SetAddress(Options& options, const ExchangeSettings& settings,
                const ExchangeRequest& request) {
    const bool encrypted = LowerCase(std::string_view(request.url).substr(0, 8)) == "https://";
    options.Set(CURLOPT_URL, request.url.c_str())
        .Set(CURLOPT_PROTOCOLS_STR, "http,https")
        .Set(CURLOPT_REDIR_PROTOCOLS_STR, encrypted ? "https" : "http,https")
        .Set(CURLOPT_FOLLOWLOCATION, request.mostRedirects > 0 ? 1L : 0L)
        .Set(CURLOPT_MAXREDIRS, request.mostRedirects)
        .Set(CURLOPT_POSTREDIR, static_cast<long>(CURL_REDIR_POST_ALL))
        .SetText(CURLOPT_PROXY, settings.proxy)
        .Set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    if (request.user.empty()) return;
    options.Set(CURLOPT_HTTPAUTH, static_cast<long>(CURLAUTH_BASIC | CURLAUTH_DIGEST))
        .SetText(CURLOPT_USERNAME, request.user)
        .SetText(CURLOPT_PASSWORD, request.password);
}

// libcurl has a folder of the system's beside the file, which it would go on to trust.
void SetTrust(Options& options, const std::string& caFile) {
    options.Set(CURLOPT_CAINFO, caFile.c_str())
        .Set(CURLOPT_PROXY_CAINFO, caFile.c_str())
        .Clear(CURLOPT_CAPATH)
        .Clear(CURLOPT_PROXY_CAPATH);
}

void SetSecurity(Options& options, const ExchangeSettings& settings) {
    options.Set(CURLOPT_SSL_VERIFYPEER, 1L)
        .Set(CURLOPT_SSL_VERIFYHOST, 2L)
        .Set(CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2))
        .Set(CURLOPT_PROXY_SSL_VERIFYPEER, 1L)
        .Set(CURLOPT_PROXY_SSL_VERIFYHOST, 2L)
        .Set(CURLOPT_PROXY_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
    if (!settings.caFile.empty()) return SetTrust(options, settings.caFile);
    // Where OpenSSL brings no certificates of its own.
    options.Set(CURLOPT_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA))
        .Set(CURLOPT_PROXY_SSL_OPTIONS, static_cast<long>(CURLSSLOPT_NATIVE_CA));
}

void SetLimits(Options& options, const ExchangeSettings& settings, const ExchangeRequest& request) {
    // A signal for the end of a look-up would be the host's to handle; a look-up that goes on
    // behind the time-out isn't waited for.
    options.Set(CURLOPT_NOSIGNAL, 1L)
        .Set(CURLOPT_QUICK_EXIT, 1L)
        .Set(CURLOPT_CONNECTTIMEOUT_MS, settings.connectTimeoutMs)
        .Set(CURLOPT_TIMEOUT_MS, settings.timeoutMs)
        .Set(CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(request.largestAnswer));
}

void SetMessages(Options& options, HeaderList& headers, const ExchangeRequest& request,
                 Arrival& arrival) {
    options.Set(CURLOPT_HTTPHEADER, headers.First())
        .Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request.body.size()))
        .Set(CURLOPT_POSTFIELDS, request.body.empty() ? "" : request.body.data())
        .Set(CURLOPT_WRITEFUNCTION, &Take<TakeBody>)
        .Set(CURLOPT_WRITEDATA, &arrival)
        .Set(CURLOPT_HEADERFUNCTION, &Take<TakeHead>)
        .Set(CURLOPT_HEADERDATA, &arrival);
}

// libcurl doesn't fill its buffer at every failure.
ExchangeOutcome Failed(const platform::CurlLibrary& curl, CURLcode code, const Arrival& arrival,
                       const char* told) {
    if (arrival.tooLarge || code == CURLE_FILESIZE_EXCEEDED) {
        return {.end = ExchangeEnd::kTooLarge,
                .curlCode = code,
                .fault = "the answer has more than " + std::to_string(arrival.largest) + " bytes"};
    }
    if (arrival.headTooLarge) {
        return {
            .end = ExchangeEnd::kHeadTooLarge,
            .curlCode = code,
            .fault = "the answer's head has more than " + std::to_string(kLargestHead) + " bytes"};
    }
    if (*told == '\0' && curl.errorText != nullptr) told = curl.errorText(code);
    return {.end = ExchangeEnd::kFailed,
            .curlCode = code,
            .fault = std::string(told) + " (libcurl error " + std::to_string(code) + ")"};
}

}  // namespace

ExchangeOutcome PostRequest(const ExchangeSettings& settings, const ExchangeRequest& request) {
    const ExchangeOutcome none{.fault = "libcurl can't be had"};
    const platform::CurlLibrary& curl = platform::GetCurlLibrary();
    if (curl.globalInit == nullptr) return none;
    // Once for all: its counterpart is never called.
    static const CURLcode started = curl.globalInit(CURL_GLOBAL_ALL);
    if (started != CURLE_OK) return none;
    const std::unique_ptr<CURL, decltype(curl.cleanup)> handle(curl.init(), curl.cleanup);
    if (!handle) return none;
    char told[CURL_ERROR_SIZE] = {};
    Arrival arrival{.largest = request.largestAnswer};
    HeaderList headers(request.headers);
    Options options(curl, handle.get());
    options.Set(CURLOPT_ERRORBUFFER, told);
    SetAddress(options, settings, request);
    SetSecurity(options, settings);
    SetLimits(options, settings, request);
    SetMessages(options, headers, request, arrival);
    const CURLcode code =
        options.Result() != CURLE_OK ? options.Result() : curl.perform(handle.get());
    if (arrival.noMemory) throw std::bad_alloc();
    if (code != CURLE_OK) return Failed(curl, code, arrival, told);
    if (!arrival.head.IsWhole()) return Failed(curl, CURLE_PARTIAL_FILE, arrival, told);
    return {.end = ExchangeEnd::kAnswered,
            .status = arrival.head.Status(),
            .type = arrival.head.Type(),
            .isEncoded = arrival.head.IsEncoded(),
            .body = std::move(arrival.body)};
}
