// The stand-in of the transport. The answer of the service is what is scripted for
// dwnt_http_response_data_get.
#include "platform/closed/Transport.h"

#include <string>

#include "fakes/Recorder.h"

using fakes::Recorder;

namespace {

int contextObject;
int requestObject;

// Handles of the transport are recorded by their kind.
Recorder& Handle(Recorder& recorder, const void* handle) {
    if (handle == &contextObject) return recorder.Text("context");
    return recorder.Text(handle == &requestObject ? "request" : nullptr);
}

}  // namespace

int dwnt_context_init(std::uint64_t zero, void** context) {
    Recorder recorder("dwnt_context_init");
    const int result = recorder.Number(static_cast<std::int64_t>(zero)).Finish();
    if (result == 0) *context = &contextObject;
    return result;
}

int dwnt_config_set(void* context, const char* name, const char* value) {
    Recorder recorder("dwnt_config_set");
    return Handle(recorder, context).Text(name).Text(value).Finish();
}

int dwnt_config_end(void* context) {
    Recorder recorder("dwnt_config_end");
    return Handle(recorder, context).Finish();
}

int dwnt_http_request_create(void* context, void** request) {
    Recorder recorder("dwnt_http_request_create");
    const int result = Handle(recorder, context).Finish();
    if (result == 0) *request = &requestObject;
    return result;
}

int dwnt_http_head_set(void* request, const char* name, const char* value) {
    Recorder recorder("dwnt_http_head_set");
    return Handle(recorder, request).Text(name).Text(value).Finish();
}

int dwnt_http_handler(void* request, int method) {
    Recorder recorder("dwnt_http_handler");
    return Handle(recorder, request).Number(method).Finish();
}

int dwnt_http_body_set(void* request, const unsigned char* data, int dataLen, int flag) {
    Recorder recorder("dwnt_http_body_set");
    return Handle(recorder, request).Bytes(data, dataLen).Number(flag).Finish();
}

int dwnt_http_processEx(void* context, std::uint64_t zero, void* request) {
    Recorder recorder("dwnt_http_processEx");
    Handle(recorder, context).Number(static_cast<std::int64_t>(zero));
    return Handle(recorder, request).Finish();
}

int dwnt_http_response_data_get(void* request, unsigned char** data, int* dataLen) {
    static std::string response;
    Recorder recorder("dwnt_http_response_data_get");
    const fakes::Answer answer = Handle(recorder, request).FinishWithAnswer({});
    if (answer.result != 0) return answer.result;
    response = answer.output;
    *data = reinterpret_cast<unsigned char*>(response.data());
    *dataLen = answer.size.value_or(static_cast<int>(response.size()));
    return 0;
}
