#include "seal/EsealNational.h"

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "foundation/Text.h"
#include "platform/closed/SealLibrary.h"

namespace {

const unsigned char* Bytes(std::string_view seal) {
    return reinterpret_cast<const unsigned char*>(seal.data());
}

}  // namespace

int ReadNationalPicture(std::string_view seal, CBuffer& picture, int* width, int* height) {
    const auto ask = [&](unsigned char* out, int* outLen) {
        return TVK_Get_Pic_From_Eseal_Ex(Bytes(seal), static_cast<int>(seal.size()), out, outLen,
                                         width, height);
    };
    const TwoStepOutcome outcome = FetchInTwoSteps(ask, 1, picture);
    return outcome.noMemory ? TESMARK_NO_MEMORY : outcome.result;
}

int ReadNationalName(std::string_view seal, const char* suffix, std::string& name) {
    const auto ask = [&](unsigned char* out, int* outLen) {
        return TVK_Get_SealName_From_Eseal(Bytes(seal), static_cast<int>(seal.size()), out, outLen);
    };
    int size = 0;
    ask(nullptr, &size);
    CBuffer utf8 = AllocateAnswer(size, 1);
    if (!utf8) return TESMARK_NO_MEMORY;
    if (const int result = FetchAnswer(ask, utf8, 1)) return result;
    name = Utf8ToAnsiBounded(utf8.View()) + suffix;
    return 0;
}
