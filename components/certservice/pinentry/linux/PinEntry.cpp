#include "components/certservice/pinentry/PinEntry.h"

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pinentry/PinentryTalk.h"
#include "components/certservice/pinentry/linux/PinentryPlan.h"
#include "components/certservice/pinentry/linux/PinentryProcess.h"

namespace {

class PinentryOfSession : public PinEntry {
public:
    int Ask(const std::string& label, int retries, const std::string& error,
            std::string& pin) override {
        const std::optional<PinentryPlan> plan = PlanPinentry(CurrentPinentrySession());
        if (!plan) return kServicePinUnavailable;
        const auto process = PinentryProcess::Start(plan->program);
        if (!process) return kServicePinUnavailable;
        return AskForPin(*process, plan->options, {label, retries, error}, pin);
    }
};

}  // namespace

std::unique_ptr<PinEntry> MakePinEntry() { return std::make_unique<PinentryOfSession>(); }
