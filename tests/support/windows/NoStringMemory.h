// NoStringMemory.h - automation strings that there is no memory for.
#pragma once

// While it lives, no automation string can be made by this program's own code. Only in a program of
// its own, since it stands between the program and one of the system's functions.
class NoStringMemory {
public:
    NoStringMemory();
    ~NoStringMemory();
    NoStringMemory(const NoStringMemory&) = delete;
    NoStringMemory& operator=(const NoStringMemory&) = delete;
};
