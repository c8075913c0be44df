#include "seal/ShownSeals.h"

namespace {

std::string BytesOf(const unsigned char* bytes, int length) {
    if (bytes == nullptr || length <= 0) return {};
    return {reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)};
}

template <typename List>
auto* Find(List& list, int index) {
    const bool holds = index >= 0 && static_cast<std::size_t>(index) < list.size();
    return holds ? &list[static_cast<std::size_t>(index)] : nullptr;
}

}  // namespace

CShownSeals::Seal CShownSeals::Copy(const SealRecord& record) {
    return {BytesOf(record.sealData, record.sealDataLen), BytesOf(record.picData, record.picLen)};
}

CShownSeals::CShownSeals(const std::vector<CertRecord>& certs) {
    for (const CertRecord& record : certs) {
        Cert& cert = m_certs.emplace_back();
        cert.certId = record.CertIdText();
        for (const SealRecord& seal : record.seals) cert.seals.push_back(Copy(seal));
    }
}

const CertRecord* CShownSeals::FindCert(const std::vector<CertRecord>& certs, int certIndex) const {
    const Cert* const shown = Find(m_certs, certIndex);
    const CertRecord* const record = Find(certs, certIndex);
    if (shown == nullptr || record == nullptr) return nullptr;
    return record->CertIdText() == shown->certId ? record : nullptr;
}

const SealRecord* CShownSeals::FindSeal(const std::vector<CertRecord>& certs, int certIndex,
                                        int sealIndex) const {
    const CertRecord* const cert = FindCert(certs, certIndex);
    if (cert == nullptr) return nullptr;
    const Seal* const shown = Find(Find(m_certs, certIndex)->seals, sealIndex);
    const SealRecord* const record = Find(cert->seals, sealIndex);
    if (shown == nullptr || record == nullptr) return nullptr;
    return Copy(*record) == *shown ? record : nullptr;
}
