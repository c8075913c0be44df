// Curl.h - what the stand-in of libcurl records, and what it answers.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace fakes {

// Calls stand in their order as "curl_global_init 3", options by their names without "CURLOPT_" and
// with their number or text: "URL http://...", "NOPROGRESS 1", "WRITEFUNCTION". A call or option
// answers with the libcurl code that stands under its name in `results`, and with 0 otherwise. As
// in libcurl an option of a null handle fails with 43.
struct CurlScript {
    std::vector<std::string> calls;
    std::map<std::string, int> results;
    bool givesNoHandle = false;
};

CurlScript& Curl();

}  // namespace fakes
