// Transport.h - the interface of the online seal service's transport, linked by its name.
#pragma once

#include <cstdint>

// All return 0 for success or a status of the transport. Handles are opaque, and nothing in the
// interface releases a request.
extern "C" {

int dwnt_context_init(std::uint64_t zero, void** context);
int dwnt_config_set(void* context, const char* name, const char* value);
int dwnt_config_end(void* context);
int dwnt_http_request_create(void* context, void** request);
int dwnt_http_head_set(void* request, const char* name, const char* value);
int dwnt_http_handler(void* request, int method);
int dwnt_http_body_set(void* request, const unsigned char* data, int dataLen, int flag);
int dwnt_http_processEx(void* context, std::uint64_t zero, void* request);
// The answer belongs to the request.
int dwnt_http_response_data_get(void* request, unsigned char** data, int* dataLen);

}  // extern "C"
