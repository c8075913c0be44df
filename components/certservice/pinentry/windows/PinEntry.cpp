#include "components/certservice/pinentry/PinEntry.h"

#include "components/certservice/ServiceCodes.h"

namespace {

// There is no window for it here yet: a key is opened by who brings its PIN along.
class NoPinEntry : public PinEntry {
public:
    int Ask(const std::string&, int, const std::string&, std::string&) override {
        return kServicePinUnavailable;
    }
};

}  // namespace

std::unique_ptr<PinEntry> MakePinEntry() { return std::make_unique<NoPinEntry>(); }
