// CurlLibrary.h - the calls of libcurl in use, wherever it stands.
#pragma once

#include <curl/curl.h>

namespace platform {

// All null if libcurl can't be had or lacks one of them but the last, which may be null alone.
struct CurlLibrary {
    decltype(&::curl_global_init) globalInit = nullptr;
    decltype(&::curl_easy_init) init = nullptr;
    CURLcode (*setOption)(CURL*, CURLoption, ...) = nullptr;
    decltype(&::curl_easy_perform) perform = nullptr;
    decltype(&::curl_easy_cleanup) cleanup = nullptr;
    decltype(&::curl_easy_strerror) errorText = nullptr;
};

// On Windows libcurl is part of the library; elsewhere the system's is opened by the first call of
// the process, and stays.
const CurlLibrary& GetCurlLibrary();

}  // namespace platform
