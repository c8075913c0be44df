// VerdictFixture.h - a scripted judge of certificates, and verdicts as tests compare them.
#pragma once

#include <map>
#include <ostream>
#include <string>
#include <vector>

#include "components/seallibrary/SealVerdict.h"

// By code and step alone.
bool operator==(const SealVerdict& left, const SealVerdict& right);
std::ostream& operator<<(std::ostream& out, const SealVerdict& verdict);

class FakeJudge : public CertificateJudge {
public:
    int Validate(const std::string& certificate) override { return m_results[certificate]; }
    int ValidateWithList(const std::string& certificate, const std::string& list) override {
        m_lists.push_back(list);
        const auto answer = m_withList.find(certificate);
        return answer != m_withList.end() ? answer->second : m_results[certificate];
    }

    std::map<std::string, int> m_results;
    std::map<std::string, int> m_withList;  // where the answer with a list is another one
    std::vector<std::string> m_lists;
};

inline SealVerdict Failure(int code, SealStep step) { return {code, step}; }
