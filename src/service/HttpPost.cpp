#include "service/HttpPost.h"

#include "foundation/Logger.h"
#include "foundation/Text.h"
#include "platform/closed/Transport.h"

namespace {

// What these select in the transport isn't known.
constexpr int kHandler = 2;
constexpr int kBodyFlag = 1;

constexpr char kProcess[] = "dwnt_http_processEx";

// Takes the status of a step by its name, and gives it back.
using Report = int (*)(const char* step, int status);

int Ignore(const char*, int status) { return status; }

// The last step alone has the same text at both levels.
int Log(const char* step, int status) {
    if (step == kProcess) {
        TESMARK_LOG(kLogInfo, "[%s返回状态码：%d]", step, status);
    } else {
        TESMARK_LOG(kLogInfo, "%s返回状态码: %d", step, status);
    }
    if (status != 0) TESMARK_LOG(kLogError, "[%s返回状态码：%d]", step, status);
    return status;
}

int Open(const std::string& url, Report report, void** context, void** request) {
    if (const int status = report("dwnt_context_init", dwnt_context_init(0, context))) {
        return status;
    }
    dwnt_config_set(*context, "ServerHost", url.c_str());
    if (const int status = report("dwnt_config_end", dwnt_config_end(*context))) return status;
    return report("dwnt_http_request_create", dwnt_http_request_create(*context, request));
}

void Fill(void* request, const std::string& body) {
    dwnt_http_head_set(request, "EncryptType", "0");
    dwnt_http_head_set(request, "RequestContent", "XML");
    dwnt_http_handler(request, kHandler);
    dwnt_http_body_set(request, reinterpret_cast<const unsigned char*>(body.data()),
                       static_cast<int>(body.size()), kBodyFlag);
}

// Empty as well where the transport has told of none.
std::string AnswerTo(void* request) {
    unsigned char* data = nullptr;
    int length = 0;
    dwnt_http_response_data_get(request, &data, &length);
    if (data == nullptr || length <= 0) return {};
    return std::string(reinterpret_cast<const char*>(data), static_cast<std::size_t>(length));
}

int Exchange(const std::string& url, const std::string& body, Report report, std::string& answer) {
    void* context = nullptr;
    void* request = nullptr;
    if (const int status = Open(url, report, &context, &request)) return status;
    Fill(request, body);
    if (const int status = report(kProcess, dwnt_http_processEx(context, 0, request))) {
        return status;
    }
    answer = AnswerTo(request);
    return 0;
}

}  // namespace

int HttpPost(const std::string& url, const std::string& body, std::string& answer) {
    TESMARK_LOG_SCOPE("HttpPost");
    std::string utf8;
    if (const int status = Exchange(url, AnsiToUtf8(body), Log, utf8)) return status;
    answer = Utf8ToAnsi(utf8);
    return 0;
}

int HttpPostRaw(const std::string& url, const std::string& body, std::string& answer) {
    return Exchange(url, body, Ignore, answer);
}
