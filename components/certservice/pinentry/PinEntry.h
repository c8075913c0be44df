// PinEntry.h - asks the person in front of the machine for a PIN.
#pragma once

#include <memory>
#include <string>

class PinEntry {
public:
    virtual ~PinEntry() = default;

    // Asks for the PIN of the key `label` (GBK). `retries` is the number of tries left, or -1 where
    // nobody knows it; `error` tells what went wrong before (GBK), or is empty. kServiceOk with the
    // PIN, kServicePinCancelled, or kServicePinUnavailable where nobody can be asked; `pin` is then
    // left alone. The caller wipes `pin`. Blocks for as long as the person takes.
    virtual int Ask(const std::string& label, int retries, const std::string& error,
                    std::string& pin) = 0;
};

// The one of this platform. Never null: where no program for it is installed, its Ask says so.
std::unique_ptr<PinEntry> MakePinEntry();
