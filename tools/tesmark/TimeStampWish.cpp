#include "TimeStampWish.h"

#include "Failure.h"
#include "Settings.h"
#include "TwoStep.h"
#include "include/TesmarkOpt.h"

void RequireTimeStamps() {
    const auto value = ReadSetting(FindSetting("bSignWithTimeStamp"));
    if (value && *value != "0") return;
    throw Failure{ExitCode::kSetup,
                  "Signatures get no time stamp on this machine.",
                  {},
                  "  switch it on: tesmark config set bSignWithTimeStamp 1"};
}

int CheckTimeStamped(std::string_view signature) {
    return VerifyPDFTimeStamp(Bytes(signature), static_cast<int>(signature.size()));
}
