// CertEsealOpt.h - the list of certificates that are present, with the seals beside them.
#pragma once

#include <string>
#include <vector>

#include "bridge/AppOpt.h"
#include "seal/SealRecord.h"

// Each enumeration throws the list away and builds a new one, in the order in which the service
// names certificates and files. A seal that can't be read is left out, with at most a log record.
// An enumeration that a host's call starts while the service answers another one is the one whose
// list stands: the other adds nothing more to it.
class CCertEsealOpt {
public:
    explicit CCertEsealOpt(CAppOpt* appOpt) : m_appOpt(appOpt) {}
    ~CCertEsealOpt() { ClearCertList(); }
    CCertEsealOpt(const CCertEsealOpt&) = delete;
    CCertEsealOpt& operator=(const CCertEsealOpt&) = delete;

    // Builds the list: 0, -3000 if the service can't be started, or the code of GetUserList.
    int GetCertAndPic();
    // The certificates alone: 0, -3002 for a list without "||", or the service bridge's code; both
    // failures leave the old list.
    int GetUserList();
    // The seals of every certificate of the list. Always 0.
    int GetEsealInfo();
    // Splits `text` (name "&&&", repeated) and keeps the names of seal files. 0 if it holds no
    // "&&&" at all, else 1.
    int praseEnumFiles(std::string text, std::vector<std::string>& names);
    // Reads the seals of the certificate at `index`. The result of the last file handled.
    int GetEsealList(std::vector<std::string> names, int index, const char* certId);
    // Frees the seals' buffers and removes all records.
    void ClearCertList();

    CAppOpt* m_appOpt;
    std::vector<CertRecord> m_certs;
    unsigned int m_clearings = 0;  // how often a list was thrown away
};
