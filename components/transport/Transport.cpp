#include "platform/closed/Transport.h"

#include <mutex>
#include <new>

#include "components/transport/HandleTable.h"
#include "components/transport/ServiceExchange.h"
#include "components/transport/TransportCodes.h"
#include "platform/CodePage.h"

namespace {

constexpr int kMostBytes = 64 << 20;

// No destructor at the end of the process: a host may call in until its very end.
CHandleTable& Table() {
    static auto* const table = new CHandleTable;
    return *table;
}

std::mutex& TableMutex() {
    static auto* const mutex = new std::mutex;
    return *mutex;
}

// What every export stands in: alone with the table, and nothing is thrown into the caller.
template <typename Step>
int WithTable(Step step) noexcept {
    try {
        const std::lock_guard<std::mutex> lock(TableMutex());
        return step(Table());
    } catch (const std::bad_alloc&) {
        return kTransportNoMemory;
    }
}

// A step of a context's configuration; its failure stays with the context.
template <typename Step>
int Configure(void* context, Step step) noexcept {
    return WithTable([&](CHandleTable& table) -> int {
        TransportContext* const found = table.FindContext(context);
        if (found == nullptr) return kTransportStaleHandle;
        const int code = step(*found);
        if (found->fault == kTransportOk) found->fault = code;
        return code;
    });
}

// A step that puts a request together; its failure stays with the request.
template <typename Step>
int Build(void* request, Step step) noexcept {
    return WithTable([&](CHandleTable& table) -> int {
        HttpRequest* const found = table.FindRequest(request);
        if (found == nullptr) return kTransportStaleHandle;
        if (found->state != RequestState::kOpen) return kTransportAlreadySent;
        const int code = step(table, *found);
        if (found->fault == kTransportOk) found->fault = code;
        return code;
    });
}

// What an exchange needs of its request, which others may look up meanwhile.
struct Errand {
    std::string address;
    std::vector<std::string> headers;
    std::string body;
};

int Start(CHandleTable& table, void* context, void* request, Errand& errand) {
    const TransportContext* const found = table.FindContext(context);
    HttpRequest* const sent = table.FindRequest(request);
    if (found == nullptr || sent == nullptr) return kTransportStaleHandle;
    if (table.OwnerOf(request) != found) return kTransportBadArgument;
    if (sent->state != RequestState::kOpen) return kTransportAlreadySent;
    if (found->fault != kTransportOk) return found->fault;
    if (sent->fault != kTransportOk) return sent->fault;
    errand.address = found->address;
    errand.headers = HeaderLines(*sent);
    errand.body = std::move(sent->body);
    sent->body.clear();
    sent->state = RequestState::kUnderWay;
    return kTransportOk;
}

int Perform(const Errand& errand, std::string& answer) noexcept {
    try {
        return AskService(ReadSealServiceSettings(), errand.address, errand.headers, errand.body,
                          answer);
    } catch (const std::bad_alloc&) {
        return kTransportNoMemory;
    }
}

}  // namespace

int dwnt_context_init(std::uint64_t, void** context) {
    if (!context) return kTransportBadArgument;
    return WithTable([&](CHandleTable& table) -> int {
        *context = table.MakeContext();
        return *context ? kTransportOk : kTransportTooMany;
    });
}

int dwnt_config_set(void* context, const char* name, const char* value) {
    return Configure(context, [&](TransportContext& found) -> int {
        if (!name || !value) return kTransportBadArgument;
        if (std::string_view(name) != "ServerHost") return kTransportUnknownName;
        found.address = platform::Utf8FromAnsi(value);
        return kTransportOk;
    });
}

int dwnt_config_end(void* context) {
    return WithTable([&](CHandleTable& table) -> int {
        const TransportContext* const found = table.FindContext(context);
        if (!found) return kTransportStaleHandle;
        return found->fault ? found->fault : CheckAddress(found->address);
    });
}

int dwnt_http_request_create(void* context, void** request) {
    if (!request) return kTransportBadArgument;
    return WithTable([&](CHandleTable& table) -> int {
        if (!table.FindContext(context)) return kTransportStaleHandle;
        *request = table.MakeRequest(context);
        return *request ? kTransportOk : kTransportTooMany;
    });
}

int dwnt_http_head_set(void* request, const char* name, const char* value) {
    return Build(request, [&](CHandleTable&, HttpRequest& found) -> int {
        return name && value ? SetHeader(found, name, value) : kTransportBadArgument;
    });
}

int dwnt_http_handler(void* request, int method) {
    constexpr int kPost = 2;
    return Build(request, [&](CHandleTable&, HttpRequest&) -> int {
        return method == kPost ? kTransportOk : kTransportNotSupported;
    });
}

int dwnt_http_body_set(void* request, const unsigned char* data, int dataLen, int) {
    return Build(request, [&](CHandleTable& table, HttpRequest& found) -> int {
        if (dataLen < 0 || (!data && dataLen > 0)) return kTransportBadArgument;
        if (dataLen > kMostBytes) return kTransportTooLarge;
        const auto size = static_cast<std::size_t>(dataLen);
        table.MakeRoom(size, request);
        found.body.assign(reinterpret_cast<const char*>(data), size);
        return kTransportOk;
    });
}

int dwnt_http_processEx(void* context, std::uint64_t, void* request) {
    Errand errand;
    const int refused =
        WithTable([&](CHandleTable& table) { return Start(table, context, request, errand); });
    if (refused != kTransportOk) return refused;
    std::string answer;
    const int result = Perform(errand, answer);
    return WithTable([&](CHandleTable& table) {
        table.Finish(request, result, std::move(answer));
        return result;
    });
}

int dwnt_http_response_data_get(void* request, unsigned char** data, int* dataLen) {
    if (!data || !dataLen) return kTransportBadArgument;
    *data = nullptr;
    *dataLen = 0;
    return WithTable([&](CHandleTable& table) -> int {
        HttpRequest* const found = table.FindRequest(request);
        if (!found) return kTransportStaleHandle;
        if (found->state != RequestState::kOver || found->result != kTransportOk) {
            return kTransportNoResponse;
        }
        *data = reinterpret_cast<unsigned char*>(found->answer.data());
        *dataLen = static_cast<int>(found->answer.size());
        table.MarkRead(request);
        return kTransportOk;
    });
}
