// CertificateShelf.h - the certificates that were read last, so that many signatures of few signers
// don't pay for decoding them again, which costs as much as verifying one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "components/seallibrary/SealCertificate.h"

// Nothing is remembered about a certificate but what stands in it. One thread at a time.
class CCertificateShelf {
public:
    static constexpr std::size_t kMost = 8;

    // As CSealCertificate::Read; what can be read stays on the shelf, where the one that was asked
    // for longest ago gives way.
    bool Read(std::string_view der, CSealCertificate& certificate);

private:
    struct Entry {
        std::string der;
        CSealCertificate certificate;
    };
    std::vector<Entry> m_entries;  // the latest first
};
