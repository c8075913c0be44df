// TrustStore.h - the folder of trusted certificates, and the check of a certificate against it.
#pragma once

#include <openssl/x509_vfy.h>

#include <functional>
#include <string>
#include <vector>

#include "components/certservice/DurableFile.h"
#include "components/certservice/RevocationList.h"
#include "components/crypto/Handles.h"

// The results of a check, the weightiest first, with SOF_ValidateCert's numbers. What is revoked
// says so even if it has expired since: a caller may forgive the end of validity, if the
// certificate was valid at the time that matters.
enum CertificateVerdict : int {
    kCertificateGood = 0,
    kCertificateUntrusted = -1,
    kCertificateRevoked = -3,
    kCertificateIssuerRevoked = -6,
    // A list of its issuer is at hand but can't be relied on. SOF_ValidateCert says -1 for it, as
    // nothing vouches for the certificate; a time stamp has a code of its own.
    kCertificateRevocationUndecided = -4,
    kCertificateExpired = -2,
    kCertificateNotYetValid = -5,
};

// Every file of the folder may hold certificates, in PEM or DER. Those that are self-signed are
// trusted; the others only help to build a chain. Files in folders below don't count.
class TrustStore {
public:
    // A folder that isn't there trusts nobody.
    explicit TrustStore(std::string folder);
    ~TrustStore();
    TrustStore(const TrustStore&) = delete;
    TrustStore& operator=(const TrustStore&) = delete;

    // Checks chain, if there is a list revocation, and validity at `now`. Expired or not yet valid
    // says that the certificates above were valid whenever this one was: one that outlives an
    // expired authority, or began before one that is yet to begin, is untrusted. RSA keys below
    // 2048 bits and signatures by SHA-1 or weaker make a chain untrusted, but for the anchor's own
    // signature, which nobody looks at. A certificate whose
    // issuer (or an issuer above) the list names is of a revoked issuer. A list that was fetched
    // for this certificate and is of another issuer leaves its revocation undecided; any other says
    // nothing about those whose issuer isn't the list's. The folder is read again if it or a file
    // in it has changed.
    CertificateVerdict Validate(X509* certificate, const RevocationList* list, bool isListForIt,
                                std::time_t now);

    // The same for the authority of a time stamp of `stamped`, when chain and validity have to have
    // been good. The list is asked as of `now` (RevocationList::CheckStamper). `helpers`, the
    // token's own certificates, help to build the chain beside the folder's.
    CertificateVerdict ValidateStamper(X509* authority,
                                       const std::vector<CertificateHandle>& helpers,
                                       const RevocationList* list, std::time_t stamped,
                                       std::time_t now);

private:
    using Revoked = std::function<CertificateVerdict(STACK_OF(X509) * chain)>;
    CertificateVerdict Judge(X509* certificate, const std::vector<CertificateHandle>& helpers,
                             std::time_t at, const Revoked& revoked);
    struct File {
        std::string path;
        FileStamp stamp;
    };

    bool IsUnchanged() const;
    void Load();
    void LoadFile(const std::string& path);

    std::string m_folder;
    FileStamp m_stamp;
    std::vector<File> m_files;
    bool m_loaded = false;
    OpenSslHandle<X509_STORE, X509_STORE_free> m_anchors;
    STACK_OF(X509) * m_intermediates = nullptr;
};
