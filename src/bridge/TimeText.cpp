#include "bridge/TimeText.h"

#include <cstdio>
#include <cstdlib>

#include "foundation/StringFailure.h"
#include "platform/Clock.h"

namespace {

constexpr int kFirstYear = 1900;

int NumberAt(const std::string& text, std::size_t position, std::size_t length) {
    return position < text.size() ? std::atoi(text.substr(position, length).c_str()) : 0;
}

bool Within(int value, int low, int high) { return value >= low && value <= high; }

// Checked here, as the systems differ in what they make of such a time.
bool IsTime(const TimeParts& parts) {
    return parts.year >= kFirstYear && Within(parts.month, 1, 12) && Within(parts.day, 1, 31) &&
           Within(parts.hour, 0, 23) && Within(parts.minute, 0, 59) && Within(parts.second, 0, 59);
}

}  // namespace

TimeParts CutCertTime(const std::string& text) {
    return {NumberAt(text, 0, 4), NumberAt(text, 4, 2),  NumberAt(text, 6, 2),
            NumberAt(text, 8, 2), NumberAt(text, 10, 2), NumberAt(text, 12, 2)};
}

TimeParts ReadTimeText(const std::string& text) {
    TimeParts parts;
    if (text.starts_with('D')) {
        std::sscanf(text.c_str(), "D:%4d%2d%2d%2d%2d%2d+08'00'", &parts.year, &parts.month,
                    &parts.day, &parts.hour, &parts.minute, &parts.second);
    } else if (text.find("年") != std::string::npos) {
        std::sscanf(text.c_str(), "%4d年%2d月%2d日%2d时%2d分%2d秒", &parts.year, &parts.month,
                    &parts.day, &parts.hour, &parts.minute, &parts.second);
    } else {
        std::sscanf(text.c_str(), "%4d-%2d-%2d %2d:%2d:%2d", &parts.year, &parts.month, &parts.day,
                    &parts.hour, &parts.minute, &parts.second);
    }
    return parts;
}

std::time_t CalendarTime(const TimeParts& parts) {
    if (!IsTime(parts)) throw StringFailure(StringFailure::kGeneral);
    std::tm local{};
    local.tm_year = parts.year - kFirstYear;
    local.tm_mon = parts.month - 1;
    local.tm_mday = parts.day;
    local.tm_hour = parts.hour;
    local.tm_min = parts.minute;
    local.tm_sec = parts.second;
    local.tm_isdst = -1;
    return platform::TimeFromLocal(local);
}
