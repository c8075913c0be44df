// Heads of HTTP answers, line by line as libcurl hands them over.

#include "components/http/AnswerHead.h"

#include <cstdint>
#include <string_view>

#include "components/text/AsciiText.h"
#include "fuzz/driver/Require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const bool fits = size <= kLargestHead;
    CAnswerHead head;
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n') + 1);
        const std::string_view taken = line.empty() ? rest : line;
        if (!head.Take(taken)) {
            REQUIRE(!fits);
            return 0;
        }
        REQUIRE(head.IsNew() == taken.starts_with("HTTP/"));
        rest.remove_prefix(taken.size());
    }
    REQUIRE(fits);
    REQUIRE(head.Status() == 0 || (head.Status() > 0 && head.Status() < 1000));
    REQUIRE(head.Type() == LowerCase(Trimmed(head.Type())));
    REQUIRE(head.Type().find(';') == std::string::npos);
    return 0;
}
