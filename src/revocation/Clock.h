// Clock.h - the time by which revocation lists grow stale.
#pragma once

#include <ctime>

class Clock {
public:
    virtual ~Clock() = default;
    virtual std::time_t Now() = 0;
};

class SystemClock : public Clock {
public:
    std::time_t Now() override { return std::time(nullptr); }
};
