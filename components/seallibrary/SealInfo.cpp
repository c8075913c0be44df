#include "components/seallibrary/SealInfo.h"

#include "components/crypto/Hex.h"
#include "components/crypto/Signature.h"
#include "components/seallibrary/SealTime.h"
#include "foundation/Text.h"

const char* FormText(SealForm form) {
    switch (form) {
        case SealForm::kGm2014: return "GM/T 0031-2014";
        case SealForm::kGb2020: return "GB/T 38540-2020";
        case SealForm::kGm2025: return "GM/T 0031-2025";
    }
    return "";
}

std::array<std::string, kSealInfoFields> SealInfo(const Seal& seal, std::string_view der) {
    return {Utf8ToAnsi(seal.esId),
            std::to_string(seal.version),
            Utf8ToAnsi(seal.vendorId),
            std::to_string(seal.type),
            CapitalHexOf(Digest(HashAlgorithm::kSm3, der)),
            Utf8ToAnsi(seal.name),
            IsoTimeText(seal.created),
            IsoTimeText(seal.validFrom),
            IsoTimeText(seal.validTo),
            Utf8ToAnsi(seal.pictureType),
            FormText(seal.form)};
}
