#include "commands/StampSubFilter.h"

#include <string>

#include "TwoStep.h"
#include "components/seallibrary/Seal.h"
#include "include/TesmarkOpt.h"

namespace {

// ISO 32000-1, 12.8.3.3. Readers know it.
constexpr StampSubFilter kPkcs7 = {"Adobe.PPKLite", "adbe.pkcs7.detached"};
// No standard names them for PDF: names of this project's own, told in docs/tesmark.md.
constexpr StampSubFilter kGm = {"Velmora.Tesmark", "GMT0031.SESeal"};
constexpr StampSubFilter kGb = {"Velmora.Tesmark", "GBT38540.SESeal"};

// Certificate, signature value, attributes, and a time stamp with its chain.
constexpr std::size_t kBesideTheSeal = 32 * 1024;

bool IsGbSealSelected() {
    std::string file;
    FetchInTwoSteps([](unsigned char* out, int* outLen) { return GetSelectedSeal(out, outLen); },
                    file);
    Seal seal;
    return ReadSeal(file, seal) == 0 && seal.form == SealForm::kGb2020;
}

}  // namespace

const StampSubFilter& SubFilterOf(int mode) {
    if (mode == 1) return IsGbSealSelected() ? kGb : kGm;
    return mode == 2 ? kGb : kPkcs7;
}

std::size_t ContentsSizeFor(int mode) {
    int sealLength = 0;
    if (mode == 1 || mode == 2) GetSelectedSeal(nullptr, &sealLength);
    return kBesideTheSeal + static_cast<std::size_t>(sealLength);
}
