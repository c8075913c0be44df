#include "platform/CurlLibrary.h"

namespace platform {

const CurlLibrary& GetCurlLibrary() {
    static constexpr CurlLibrary curl{&curl_global_init,  &curl_easy_init,    &curl_easy_setopt,
                                      &curl_easy_perform, &curl_easy_cleanup, &curl_easy_strerror};
    return curl;
}

}  // namespace platform
