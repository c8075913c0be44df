#include "seal/CertEsealOpt.h"

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "seal/KeyFiles.h"
#include "seal/KeyLists.h"

namespace {

// A result of 0 from the second attempt goes on, whatever the flag says.
bool ServiceFailed(CAppOpt& appOpt) {
    if (appOpt.initialised) return false;
    KVLInitialize(appOpt);
    return !appOpt.initialised && KVLInitialize(appOpt) != 0;
}

}  // namespace

int CCertEsealOpt::GetCertAndPic() {
    TESMARK_LOG_SCOPE("CCertEsealOpt::GetCertAndPic");
    if (ServiceFailed(*m_appOpt)) {
        TESMARK_LOG(kLogError, "KVLInitialize error");
        return TESMARK_ENUMERATION_NO_SERVICE;
    }
    if (const int code = GetUserList()) {
        TESMARK_LOG(kLogError, "GetUserList error:%d", code);
        return code;
    }
    if (const int code = GetEsealInfo()) {
        TESMARK_LOG(kLogError, "GetEsealInfo error:%d", code);
        return code;
    }
    return 0;
}

int CCertEsealOpt::GetUserList() {
    TESMARK_LOG_SCOPE("CCertEsealOpt::GetUserList");
    CBuffer buffer;
    if (const int code = m_appOpt->GetUserList(buffer)) {
        TESMARK_LOG(kLogError, "GetUserList error:%d", code);
        return code;
    }
    const std::string list = buffer ? buffer.Text() : "";
    if (list.find(kBehindLabel) == std::string::npos) {
        TESMARK_LOG(kLogError, "Cert error:ERROR_TESMARK_CERT_FORMAT");
        return TESMARK_CERT_LIST_FORMAT;
    }
    ClearCertList();
    m_certs = ReadUserList(list);
    return 0;
}

int CCertEsealOpt::praseEnumFiles(std::string text, std::vector<std::string>& names) {
    return ReadFileList(text, names) ? 1 : 0;
}

int CCertEsealOpt::GetEsealInfo() {
    TESMARK_LOG_SCOPE("CCertEsealOpt::GetEsealInfo");
    const unsigned int clearings = m_clearings;
    for (std::size_t index = 0; clearings == m_clearings && index < m_certs.size(); ++index) {
        const std::string certId = m_certs[index].CertIdText();
        std::string list;
        const int code = ListKeyFiles(*m_appOpt, certId.c_str(), list);
        if (code != 0 || clearings != m_clearings) continue;
        std::vector<std::string> names;
        if (praseEnumFiles(std::move(list), names) == 0) {
            TESMARK_LOG(kLogError, "praseEnumFiles error");
            continue;
        }
        GetEsealList(std::move(names), static_cast<int>(index), certId.c_str());
    }
    return 0;
}

void CCertEsealOpt::ClearCertList() {
    for (CertRecord& cert : m_certs) FreeSeals(cert.seals);
    m_certs.clear();
    ++m_clearings;
}
