#include "SignatureTime.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "platform/Clock.h"

namespace {

// Takes `count` digits off the front; negative if they aren't there.
int TakeNumber(std::string_view& text, std::size_t count) {
    if (text.size() < count) return -1;
    int number = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (text[i] < '0' || text[i] > '9') return -1;
        number = number * 10 + (text[i] - '0');
    }
    text.remove_prefix(count);
    return number;
}

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysIn(int year, int month) {
    constexpr std::array<int, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

// Days since the first of January 1970, in the Gregorian calendar.
std::int64_t DaysBefore(int year, int month, int day) {
    const std::int64_t past = year - 1;
    std::int64_t days = past * 365 + past / 4 - past / 100 + past / 400 - 719'162;
    for (int i = 1; i < month; ++i) days += DaysIn(year, i);
    return days + day - 1;
}

// Seconds east of Greenwich: "Z", "+08'00'", "-0330", "+08"; none if it is something else.
std::optional<int> TakeOffset(std::string_view text) {
    if (text.front() == 'Z') return 0;
    const int sign = text.front() == '-' ? -1 : 1;
    if (text.front() != '+' && text.front() != '-') return {};
    text.remove_prefix(1);
    const int hours = TakeNumber(text, 2);
    if (text.starts_with('\'')) text.remove_prefix(1);
    const int minutes = text.empty() ? 0 : TakeNumber(text, 2);
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59) return {};
    return sign * (hours * 3600 + minutes * 60);
}

std::string Text(const std::tm& time) {
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02d %02d:%02d:%02d", time.tm_year + 1900,
                  time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec);
    return text.data();
}

}  // namespace

std::optional<std::time_t> ReadPdfTime(std::string_view text) {
    if (text.starts_with("D:")) text.remove_prefix(2);
    // Year, month, day, hour, minute, second: from the month on each may be left out.
    std::array<int, 6> parts = {0, 1, 1, 0, 0, 0};
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0 && (text.empty() || text.front() < '0' || text.front() > '9')) break;
        parts[i] = TakeNumber(text, i == 0 ? 4 : 2);
        if (parts[i] < 0) return {};
    }
    const auto [year, month, day, hour, minute, second] = parts;
    if (year < 1900 || month < 1 || month > 12 || day < 1 || day > DaysIn(year, month) ||
        hour > 23 || minute > 59 || second > 60) {
        return {};
    }
    const std::int64_t seconds =
        DaysBefore(year, month, day) * 86'400 + hour * 3'600 + minute * 60 + second;
    if (!text.empty()) {
        const auto offset = TakeOffset(text);
        return offset ? std::optional<std::time_t>(seconds - *offset) : std::nullopt;
    }
    std::tm local{};
    local.tm_year = year - 1900;
    local.tm_mon = month - 1;
    local.tm_mday = day;
    local.tm_hour = hour;
    local.tm_min = minute;
    local.tm_sec = second;
    local.tm_isdst = -1;
    return std::mktime(&local);
}

std::string LocalTimeText(std::time_t time) { return Text(platform::LocalTime(time)); }

std::string SpacedTime(const std::string& digits) {
    if (digits.size() < 14 || digits.find_first_not_of("0123456789") < 14) return digits;
    return digits.substr(0, 4) + "-" + digits.substr(4, 2) + "-" + digits.substr(6, 2) + " " +
           digits.substr(8, 2) + ":" + digits.substr(10, 2) + ":" + digits.substr(12, 2);
}
