// DataOut.h - the rule by which the service hands data out: (out, outLen), in one call or in two.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

// Writes `data` to `out`, with a terminator behind it if there is room, and its size, without the
// terminator, to `*outLen`. A null `out` asks for the size. kServiceBadArgument: `outLen` is null
// or negative with a buffer; kServiceBufferTooSmall: `*outLen` is the size needed, and `out`
// untouched.
int HandOut(std::string_view data, unsigned char* out, int* outLen);

// The entry points whose result may be another one at the next call.
enum class TwoStep {
    kUserList,
    kExportCertificate,
    kFileList,
    kReadFile,
    kSignData,
    kSignMessage,
    kSignHash,
    kTimeStampRequest,
    kCount
};

// Keeps what a size query computed until the fetch that follows it, one result for each entry
// point.
class PendingResults {
public:
    // Computes the result at the size query, and at a fetch that has no query with the same
    // `arguments` before it; else it is the query's. It is dropped once it is fetched, but not when
    // the buffer was too small. A failure of `compute` is returned and leaves nothing behind.
    int Serve(TwoStep call, const std::string& arguments,
              const std::function<int(std::string&)>& compute, unsigned char* out, int* outLen);

    // True if a fetch with these arguments has a query before it.
    bool Holds(TwoStep call, const std::string& arguments) const;

private:
    struct Result {
        bool kept = false;
        std::string arguments;
        std::string data;
    };

    std::array<Result, static_cast<size_t>(TwoStep::kCount)> m_results;
};
