#include "platform/closed/Transport.h"

#include <memory>
#include <mutex>
#include <vector>

#include "components/transport/HttpRequest.h"
#include "components/transport/TransportCodes.h"

namespace {

constexpr int kMostBytes = 64 << 20;

// The interface releases neither contexts nor requests; they live as long as the process.
std::vector<std::unique_ptr<CTransportContext>>& Contexts() {
    static auto* const contexts = new std::vector<std::unique_ptr<CTransportContext>>;
    return *contexts;
}

std::mutex& ContextsMutex() {
    static auto* const mutex = new std::mutex;
    return *mutex;
}

CTransportContext* Context(void* context) { return static_cast<CTransportContext*>(context); }
HttpRequest* Request(void* request) { return static_cast<HttpRequest*>(request); }

}  // namespace

int dwnt_context_init(std::uint64_t, void** context) {
    if (!context) return kTransportBadArgument;
    const std::lock_guard<std::mutex> lock(ContextsMutex());
    *context = Contexts().emplace_back(std::make_unique<CTransportContext>()).get();
    return kTransportOk;
}

int dwnt_config_set(void* context, const char* name, const char* value) {
    if (!context || !name || !value) return kTransportBadArgument;
    return Context(context)->Set(name, value);
}

int dwnt_config_end(void* context) {
    return context ? Context(context)->EndConfiguration() : kTransportBadArgument;
}

int dwnt_http_request_create(void* context, void** request) {
    if (!context || !request) return kTransportBadArgument;
    *request = Context(context)->CreateRequest();
    return kTransportOk;
}

int dwnt_http_head_set(void* request, const char* name, const char* value) {
    if (!request || !name || !value) return kTransportBadArgument;
    return SetHeader(*Request(request), name, value);
}

int dwnt_http_handler(void* request, int method) {
    constexpr int kPost = 2;
    if (!request) return kTransportBadArgument;
    return method == kPost ? kTransportOk : kTransportNotSupported;
}

int dwnt_http_body_set(void* request, const unsigned char* data, int dataLen, int) {
    if (!request || dataLen < 0 || (!data && dataLen > 0)) return kTransportBadArgument;
    if (dataLen > kMostBytes) return kTransportTooLarge;
    Request(request)->body.assign(reinterpret_cast<const char*>(data),
                                  static_cast<std::size_t>(dataLen));
    return kTransportOk;
}

int dwnt_http_processEx(void* context, std::uint64_t, void* request) {
    if (!context || !request || !Context(context)->Owns(Request(request)))
        return kTransportBadArgument;
    // The request outlives its exchange, so at least its body must not.
    std::string().swap(Request(request)->body);
    return kTransportNotAvailable;
}

int dwnt_http_response_data_get(void* request, unsigned char** data, int* dataLen) {
    if (!request || !data || !dataLen) return kTransportBadArgument;
    *data = nullptr;
    *dataLen = 0;
    return kTransportNoResponse;
}
