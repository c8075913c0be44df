#include "components/seallibrary/CertificateShelf.h"

#include <algorithm>

bool CCertificateShelf::Read(std::string_view der, CSealCertificate& certificate) {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [der](const Entry& entry) { return entry.der == der; });
    if (found != m_entries.end()) {
        std::rotate(m_entries.begin(), found, found + 1);
    } else {
        CSealCertificate read;
        if (!read.Read(der)) return false;
        if (m_entries.size() == kMost) m_entries.pop_back();
        m_entries.insert(m_entries.begin(), {std::string(der), read});
    }
    certificate = m_entries.front().certificate;
    return true;
}
