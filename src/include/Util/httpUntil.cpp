#include "include/Util/httpUntil.h"

#include <cstdio>
#include <memory>

#include "foundation/Logger.h"
#include "platform/CurlLibrary.h"
#include "platform/StandardError.h"

namespace {

// The address may be of a certificate that nobody trusts: what it gives shall not fill the disk.
constexpr std::size_t kLargest = 64 * 1024 * 1024;

// Less than was given ends the transfer with CURLE_WRITE_ERROR.
std::size_t WriteToFile(const char* data, std::size_t size, std::size_t count, void* stream) {
    auto* const file = static_cast<std::FILE*>(stream);
    const long written = std::ftell(file);
    if (written < 0 || size * count > kLargest - static_cast<std::size_t>(written)) return 0;
    return std::fwrite(data, size, count, file);
}

int Report(CURLcode result) {
    if (result != CURLE_OK) TESMARK_LOG(kLogError, "curl_easy_setopt failed, %d", result);
    return result;
}

int SetOptions(const platform::CurlLibrary& curl, CURL* handle, const char* url) {
    const auto set = [&](CURLoption option, auto value) {
        return Report(curl.setOption(handle, option, value));
    };
    if (const int code = set(CURLOPT_URL, url)) return code;
    if (platform::TracesToStandardError()) {
        if (const int code = set(CURLOPT_VERBOSE, 1L)) return code;
    }
    for (const CURLoption option : {CURLOPT_NOPROGRESS, CURLOPT_FOLLOWLOCATION}) {
        if (const int code = set(option, 1L)) return code;
    }
    for (const CURLoption option : {CURLOPT_SSL_VERIFYPEER, CURLOPT_SSL_VERIFYHOST}) {
        if (const int code = set(option, 0L)) return code;
    }
    return set(CURLOPT_WRITEFUNCTION, &WriteToFile);
}

}  // namespace

int CHttpUntil::DownloadFile(std::string url, std::string path) {
    const platform::CurlLibrary& curl = platform::GetCurlLibrary();
    const CURLcode started =
        curl.globalInit != nullptr ? curl.globalInit(CURL_GLOBAL_ALL) : CURLE_FAILED_INIT;
    if (started != CURLE_OK) {
        TESMARK_LOG(kLogError, "curl_global_init failed, %d", started);
        return started;
    }
    // A null handle shows up as an option that fails.
    const std::unique_ptr<CURL, decltype(curl.cleanup)> handle(curl.init(), curl.cleanup);
    if (const int code = SetOptions(curl, handle.get(), url.c_str())) return code;
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::fopen(path.c_str(), "wb"),
                                                                  &std::fclose);
    if (!file) return 0;
    const CURLcode told = curl.setOption(handle.get(), CURLOPT_WRITEDATA, file.get());
    if (const int code = Report(told)) return code;
    const CURLcode performed = curl.perform(handle.get());
    if (performed != CURLE_OK) TESMARK_LOG(kLogError, "curl_easy_perform failed, %d", performed);
    return performed;
}
