// ShownSeals.h - what stood in the list of certificates and seals when it was shown to the user.
#pragma once

#include <string>
#include <vector>

#include "seal/SealRecord.h"

// A host's call that arrives while a dialog shows the list can rebuild it, and the same place then
// stands for another seal than the user saw. Keeps copies, so that it outlives the list.
class CShownSeals {
public:
    CShownSeals() = default;  // nothing is shown
    explicit CShownSeals(const std::vector<CertRecord>& certs);

    // What `certs` holds in this place, if it is what was shown there: of a certificate the
    // identifier tells that, of a seal also the bytes of its file and its picture. Null otherwise,
    // and for a place outside of either list.
    const CertRecord* FindCert(const std::vector<CertRecord>& certs, int certIndex) const;
    const SealRecord* FindSeal(const std::vector<CertRecord>& certs, int certIndex,
                               int sealIndex) const;

private:
    struct Seal {
        std::string file;
        std::string picture;
        bool operator==(const Seal&) const = default;
    };
    struct Cert {
        std::string certId;
        std::vector<Seal> seals;
    };
    static Seal Copy(const SealRecord& record);

    std::vector<Cert> m_certs;
};
