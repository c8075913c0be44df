// EnumerationTest.h - an enumeration over a bridge of its own.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "fakes/LibraryTest.h"
#include "seal/CertEsealOpt.h"

class EnumerationTest : public LibraryTest {
protected:
    ~EnumerationTest() override { KVLUnInitialize(m_appOpt); }

    // The text of the user list as the service gives it; every identifier is that of hardware.
    static void GiveUserList(const std::string& list) {
        if (fakes::Certificates().empty()) fakes::AddCertificate("", "unused");
        fakes::On("SOF_GetUserList").Gives(list);
        fakes::On("GetDeviceInfo").Gives("HARD");
    }

    std::vector<std::string> Labels() const {
        std::vector<std::string> labels;
        for (const CertRecord& cert : m_list.m_certs) {
            const std::string_view label(cert.certName, sizeof cert.certName);
            labels.emplace_back(label.substr(0, label.find('\0')));
        }
        return labels;
    }

    // The names of the first certificate's seals.
    std::vector<std::string> Seals() const {
        std::vector<std::string> names;
        if (m_list.m_certs.empty()) return {"no certificate"};
        for (const SealRecord& seal : m_list.m_certs[0].seals) names.push_back(seal.name);
        return names;
    }

    CAppOpt m_appOpt;
    CCertEsealOpt m_list{&m_appOpt};
};
