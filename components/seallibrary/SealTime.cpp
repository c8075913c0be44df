#include "components/seallibrary/SealTime.h"

#include <openssl/crypto.h>

#include <cstdint>
#include <cstdio>

namespace {

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

std::size_t CountDigits(std::string_view text) {
    std::size_t count = 0;
    while (count < text.size() && IsDigit(text[count])) ++count;
    return count;
}

// Takes `width` digits off the front of `text`, all of which are there.
int TakeNumber(std::string_view& text, std::size_t width) {
    int number = 0;
    for (std::size_t i = 0; i < width; ++i) number = number * 10 + (text[i] - '0');
    text.remove_prefix(width);
    return number;
}

bool IsLeapYear(int year) { return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0; }

int DaysInMonth(int year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

// Numbers as they stand in the text: the month from 1, the full year. A leap second counts as a
// moment, since a revocation list may bear one.
bool IsPossible(const std::tm& date) {
    return date.tm_mon >= 1 && date.tm_mon <= 12 && date.tm_mday >= 1 &&
           date.tm_mday <= DaysInMonth(date.tm_year, date.tm_mon) && date.tm_hour <= 23 &&
           date.tm_min <= 59 && date.tm_sec <= 60;
}

// Days from 1970-01-01 in the Gregorian calendar; years counted from March put the leap day last.
std::int64_t DaysSinceEpoch(int year, int month, int day) {
    const int shifted = month <= 2 ? year - 1 : year;
    const int era = (shifted >= 0 ? shifted : shifted - 399) / 400;
    const int yearOfEra = shifted - era * 400;
    const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * std::int64_t{146097} + dayOfEra - 719468;
}

std::time_t UniversalTime(const std::tm& date) {
    const std::int64_t days = DaysSinceEpoch(date.tm_year, date.tm_mon, date.tm_mday);
    return days * 86400 + date.tm_hour * 3600 + date.tm_min * 60 + date.tm_sec;
}

// What stands behind the seconds: a fraction and a zone. Seconds to take off, or nothing.
std::optional<int> ZoneOffset(std::string_view text) {
    if (!text.empty() && (text[0] == '.' || text[0] == ',')) {
        const std::size_t digits = CountDigits(text.substr(1));
        if (digits == 0) return std::nullopt;
        text.remove_prefix(1 + digits);
    }
    if (text.empty() || text == "Z") return 0;
    const int sign = text[0] == '+' ? 1 : -1;
    if ((text[0] != '+' && text[0] != '-') || text.size() != 5) return std::nullopt;
    text.remove_prefix(1);
    if (CountDigits(text) != 4) return std::nullopt;
    const int hours = TakeNumber(text, 2);
    const int minutes = TakeNumber(text, 2);
    if (hours > 14 || minutes > 59) return std::nullopt;
    return sign * (hours * 3600 + minutes * 60);
}

// Six groups of digits with anything but digits between them, taken off the front of `text`.
bool ReadGroups(std::string_view& text, std::tm& date) {
    for (int* number :
         {&date.tm_year, &date.tm_mon, &date.tm_mday, &date.tm_hour, &date.tm_min, &date.tm_sec}) {
        while (!text.empty() && !IsDigit(text[0])) text.remove_prefix(1);
        const std::size_t digits = CountDigits(text);
        if (digits == 0 || digits > 4) return false;
        *number = TakeNumber(text, digits);
    }
    return CountDigits(text) == 0;
}

// The zone at the end of a host's text without the colon in it; empty if no zone stands there, as
// in front of a "秒".
std::string ZoneBehindGroups(std::string_view text) {
    std::string zone(text);
    if (zone.size() == 6 && zone[3] == ':') zone.erase(3, 1);
    return ZoneOffset(zone) ? zone : std::string();
}

// False for a mere fraction.
bool NamesZone(std::string_view zone) { return zone.find_first_of("Z+-") != zone.npos; }

// The numbers of a run of 14 digits, or of 12 or 10 with a year of two.
void ReadRun(std::string_view& text, std::size_t digits, std::tm& date) {
    date.tm_year = TakeNumber(text, digits == 14 ? 4 : 2);
    if (digits != 14) date.tm_year += date.tm_year < 50 ? 2000 : 1900;
    for (int* number : {&date.tm_mon, &date.tm_mday, &date.tm_hour, &date.tm_min})
        *number = TakeNumber(text, 2);
    if (digits >= 12) date.tm_sec = TakeNumber(text, 2);
}

// The calendar repeats itself after 400 years, and the C library of Windows knows that of 1970 to
// 3000 alone.
constexpr int kCycleYears = 400;
constexpr std::int64_t kCycleSeconds = std::int64_t{146097} * 86400;

std::int64_t FloorDivision(std::int64_t number, std::int64_t divisor) {
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

// False for a moment that has no calendar date of four digits.
bool CalendarDate(std::time_t time, std::tm& date) {
    const std::int64_t cycles = FloorDivision(time, kCycleSeconds);
    const std::time_t within = time - cycles * kCycleSeconds;
    if (cycles < -5 || cycles > 20 || !OPENSSL_gmtime(&within, &date)) return false;
    date.tm_year += 1900 + static_cast<int>(cycles) * kCycleYears;
    date.tm_mon += 1;
    return date.tm_year >= 0 && date.tm_year <= 9999;
}

// Numbers as mktime takes them.
std::optional<std::time_t> LocalMoment(const std::tm& date) {
    std::tm known = date;
    const std::time_t time = std::mktime(&known);
    if (time != -1) return time;
    const std::int64_t cycles = FloorDivision(date.tm_year - 100, kCycleYears);
    std::tm within = date;
    within.tm_year -= static_cast<int>(cycles) * kCycleYears;
    const std::time_t earlier = std::mktime(&within);
    return earlier == -1 ? std::nullopt : std::optional(earlier + cycles * kCycleSeconds);
}

}  // namespace

std::optional<std::time_t> ReadAsn1Time(std::string_view text) {
    const std::size_t digits = CountDigits(text);
    if (digits != 10 && digits != 12 && digits != 14) return std::nullopt;
    std::tm date = {};
    ReadRun(text, digits, date);
    const std::optional<int> offset = ZoneOffset(text);
    if (!offset || !IsPossible(date)) return std::nullopt;
    return UniversalTime(date) - *offset;
}

std::string GeneralizedTimeText(std::time_t time) {
    std::tm date = {};
    if (!CalendarDate(time, date)) return {};
    char text[80];
    std::snprintf(text, sizeof text, "%04d%02d%02d%02d%02d%02dZ", date.tm_year, date.tm_mon,
                  date.tm_mday, date.tm_hour, date.tm_min, date.tm_sec);
    return text;
}

std::string UtcTimeText(std::time_t time) {
    const std::string text = GeneralizedTimeText(time);
    if (text < "1950" || text >= "2050") return {};
    return text.substr(2);
}

std::string IsoTimeText(std::time_t time) {
    std::tm date = {};
    if (!CalendarDate(time, date)) return {};
    char text[80];
    std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02dZ", date.tm_year, date.tm_mon,
                  date.tm_mday, date.tm_hour, date.tm_min, date.tm_sec);
    return text;
}

std::optional<std::time_t> ReadHostTime(std::string_view text) {
    std::tm date = {};
    std::string zone;
    if (text.substr(0, 2) == "D:") {
        text.remove_prefix(2);
        if (CountDigits(text) != 14) return std::nullopt;
        ReadRun(text, 14, date);
    } else if (const std::size_t digits = CountDigits(text); digits >= 10) {
        if (digits != 10 && digits != 12 && digits != 14) return std::nullopt;
        ReadRun(text, digits, date);
        zone = text;
        if (!ZoneOffset(zone)) return std::nullopt;
    } else if (ReadGroups(text, date)) {
        zone = ZoneBehindGroups(text);
    } else {
        return std::nullopt;
    }
    if (date.tm_year < 1900 || !IsPossible(date)) return std::nullopt;
    if (NamesZone(zone)) return UniversalTime(date) - *ZoneOffset(zone);
    date.tm_year -= 1900;
    date.tm_mon -= 1;
    date.tm_isdst = -1;
    return LocalMoment(date);
}
