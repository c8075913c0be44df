#include "session/KeyProbe.h"

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"

namespace {

constexpr unsigned char kProbeText[] = {'1'};

}  // namespace

int SignProbe(const std::string& certId) {
    CBuffer signature;
    return g_appOpt.SignData(kProbeText, sizeof kProbeText, certId.c_str(), signature);
}

// What the stamp would take is asked for, and the stamp itself made by the authority.
int StampProbe() {
    int size = 0;
    const int result = g_appOpt.SignTimeStamp(kProbeText, sizeof kProbeText, nullptr, &size);
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "SignTimeStamp error %d", result);
    return TESMARK_TIME_STAMP_FAILED;
}
