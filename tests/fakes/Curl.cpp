#include "fakes/Curl.h"

#include <curl/curl.h>

#include <cstdarg>

#undef curl_easy_setopt

namespace {

constexpr struct {
    CURLoption option;
    const char* name;
} kOptions[] = {
    {CURLOPT_URL, "URL"},
    {CURLOPT_VERBOSE, "VERBOSE"},
    {CURLOPT_NOPROGRESS, "NOPROGRESS"},
    {CURLOPT_FOLLOWLOCATION, "FOLLOWLOCATION"},
    {CURLOPT_SSL_VERIFYPEER, "SSL_VERIFYPEER"},
    {CURLOPT_SSL_VERIFYHOST, "SSL_VERIFYHOST"},
    {CURLOPT_WRITEFUNCTION, "WRITEFUNCTION"},
    {CURLOPT_WRITEDATA, "WRITEDATA"},
};

std::string NameOf(CURLoption option) {
    for (const auto& row : kOptions) {
        if (row.option == option) return row.name;
    }
    return "option " + std::to_string(option);
}

CURLcode Answer(const std::string& name, const std::string& argument = "") {
    fakes::CurlScript& script = fakes::Curl();
    script.calls.push_back(argument.empty() ? name : name + " " + argument);
    const auto result = script.results.find(name);
    return result == script.results.end() ? CURLE_OK : static_cast<CURLcode>(result->second);
}

}  // namespace

fakes::CurlScript& fakes::Curl() {
    static CurlScript script;
    return script;
}

extern "C" {

CURLcode curl_global_init(long flags) { return Answer("curl_global_init", std::to_string(flags)); }

CURL* curl_easy_init() {
    static int handle;
    Answer("curl_easy_init");
    return fakes::Curl().givesNoHandle ? nullptr : &handle;
}

CURLcode curl_easy_setopt(CURL* handle, CURLoption option, ...) {
    va_list arguments;
    va_start(arguments, option);
    std::string value;
    if (option < CURLOPTTYPE_OBJECTPOINT) value = std::to_string(va_arg(arguments, long));
    if (option == CURLOPT_URL) value = va_arg(arguments, const char*);
    va_end(arguments);
    const CURLcode result = Answer(NameOf(option), value);
    return handle == nullptr ? CURLE_BAD_FUNCTION_ARGUMENT : result;
}

CURLcode curl_easy_perform(CURL*) { return Answer("curl_easy_perform"); }

void curl_easy_cleanup(CURL*) { Answer("curl_easy_cleanup"); }

const char* curl_easy_strerror(CURLcode) { return "a fault"; }

}  // extern "C"
