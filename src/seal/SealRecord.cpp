#include "seal/SealRecord.h"

#include <cstddef>
#include <cstdlib>
#include <string_view>

namespace {

std::string UpToZero(const std::string& bytes) { return bytes.substr(0, bytes.find('\0')); }

}  // namespace

void FreeSeals(std::vector<SealRecord>& seals) {
    for (const SealRecord& seal : seals) {
        std::free(seal.picData);
        std::free(seal.sealData);
    }
    seals.clear();
}

// The three fields lie behind one another without a gap, so a text is one run of bytes.
std::string CertRecord::CertIdText() const {
    static_assert(offsetof(CertRecord, certName) == offsetof(CertRecord, certId) + sizeof certId);
    static_assert(offsetof(CertRecord, scanMode) ==
                  offsetof(CertRecord, certName) + sizeof certName);
    std::string text(certId, sizeof certId);
    text.append(certName, sizeof certName);
    text.append(reinterpret_cast<const char*>(&scanMode), sizeof scanMode);
    return UpToZero(text);
}

std::string CertRecord::CertNameText() const {
    std::string text(certName, sizeof certName);
    text.append(reinterpret_cast<const char*>(&scanMode), sizeof scanMode);
    return UpToZero(text);
}
