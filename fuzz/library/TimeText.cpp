// The texts of times: a part never exceeds its digits, a time is made of what is one and of nothing
// else, and what is one reads back from each of the three forms.

#include "bridge/TimeText.h"

#include <array>
#include <cstdint>
#include <string>

#include "foundation/StringFailure.h"
#include "fuzz/driver/Require.h"

namespace {

bool Within(int value, int low, int high) { return value >= low && value <= high; }

bool IsTime(const TimeParts& parts) {
    return parts.year >= 1900 && Within(parts.month, 1, 12) && Within(parts.day, 1, 31) &&
           Within(parts.hour, 0, 23) && Within(parts.minute, 0, 59) && Within(parts.second, 0, 59);
}

void RequireDigits(const TimeParts& parts) {
    REQUIRE(Within(parts.year, -999, 9999));
    for (const int part : {parts.month, parts.day, parts.hour, parts.minute, parts.second}) {
        REQUIRE(Within(part, -9, 99));
    }
}

using Separators = std::array<const char*, 7>;

// The parts between what stands ahead of, between and behind them, with two digits at least.
std::string Written(const TimeParts& parts, const Separators& separators) {
    std::string text = separators[0];
    std::size_t part = 1;
    for (const int value :
         {parts.year, parts.month, parts.day, parts.hour, parts.minute, parts.second}) {
        text += (value < 10 ? "0" : "") + std::to_string(value) + separators[part++];
    }
    return text;
}

void RequireSameInEveryForm(const TimeParts& parts) {
    for (const Separators& separators : {Separators{"D:", "", "", "", "", "", "+08'00'"},
                                         Separators{"", "年", "月", "日", "时", "分", "秒"},
                                         Separators{"", "-", "-", " ", ":", ":", ""}}) {
        REQUIRE(ReadTimeText(Written(parts, separators)) == parts);
    }
    REQUIRE(CutCertTime(Written(parts, {"", "", "", "", "", "", "Z"})) == parts);
}

void RequireTimeOrFailure(const TimeParts& parts) {
    RequireDigits(parts);
    bool failed = false;
    try {
        CalendarTime(parts);
    } catch (const StringFailure& failure) {
        failed = failure.Value() == StringFailure::kGeneral;
    }
    REQUIRE(failed != IsTime(parts));
    if (!failed) RequireSameInEveryForm(parts);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    RequireTimeOrFailure(ReadTimeText(text));
    RequireTimeOrFailure(CutCertTime(text));
    return 0;
}
