// AdminPages.h - the contents of the administrator's pages, as HTML.
#pragma once

#include <string>
#include <vector>

#include "tools/sealserver/OfferedSeal.h"
#include "tools/sealserver/SealStore.h"

struct CertificateEntry {
    StoredCertificate certificate;
    std::size_t seals = 0;
    std::size_t suspended = 0;
};

std::string LoginContent();
std::string PasswordContent(const std::string& formToken);

// The certificates, and the form for a further one.
std::string CertificatesContent(const std::vector<CertificateEntry>& entries,
                                const std::string& formToken);
// One certificate with its seals, and the form for a further one.
std::string CertificateContent(const StoredCertificate& certificate,
                               const std::vector<StoredSeal>& seals, const std::string& formToken);
// One seal; `offered` is what can be read in its file.
std::string SealContent(const StoredSeal& seal, const OfferedSeal& offered,
                        const StoredCertificate& certificate, const std::string& formToken);
// Asks whether `what` is to be removed; both addresses are ours.
std::string RemovalContent(const std::string& what, const std::string& action,
                           const std::string& back, const std::string& formToken);
