#include "bridge/SealSigner.h"

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "foundation/StringFailure.h"
#include "foundation/Text.h"
#include "platform/closed/SealLibrary.h"

int GetSealSigner(const unsigned char* signature, int signatureLen, std::string& cert) {
    const std::string text = Base64EncodeBytes(signature, CheckedLength(signatureLen));
    CBuffer certText;
    const TwoStepOutcome asked = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return TVK_Get_Sign_Cert_From_SIG(reinterpret_cast<const unsigned char*>(text.data()),
                                              static_cast<int>(text.size()), out, outLen);
        },
        1, certText);
    if (asked.noMemory) return TESMARK_NO_MEMORY;
    if (asked.result != 0) return asked.result;
    // Some count the text's zero byte.
    const std::string_view told = certText.View();
    cert = Base64Decode(told.substr(0, told.find('\0')));
    return 0;
}
