// TimeText.h - the texts in which certificates and signatures tell a time.
#pragma once

#include <ctime>
#include <string>

// A time as it was written, which need not be one that exists.
struct TimeParts {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;

    bool operator==(const TimeParts&) const = default;
};

// The time of a certificate's field, YYYYMMDDhhmmss: each part is cut out by its position and read
// as far as it is a decimal number. What the text lacks is 0; what follows is not looked at.
TimeParts CutCertTime(const std::string& text);

// The time of a signature, GBK, in one of three forms, told apart in this order: that of a PDF
// (ISO 32000-1, 7.9.4) by its first character "D", the Chinese one by a "年" anywhere, else the ISO
// one:
//     D:20261121093000+08'00'    2026年11月21日09时30分00秒    2026-11-21 09:30:00
// Read as scanf reads: a part may be shorter than its room, blanks may stand before it, and where
// the text stops fitting the parts not yet read stay 0. So an offset other than +08'00' stops
// behind the last part; no offset is ever applied.
TimeParts ReadTimeText(const std::string& text);

// Local time, daylight saving as the system knows it; a day that the month lacks runs into the
// next. Throws StringFailure::kGeneral for a year under 1900, a month outside 1 to 12, a day
// outside 1 to 31, an hour over 23, a minute or second over 59, and for negative ones.
std::time_t CalendarTime(const TimeParts& parts);
