// StoreFixture.h - a store in a folder of its own, and certificates and seals to put into it.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "support/TemporaryFolder.h"
#include "tests/components/seallibrary/TestPki.h"
#include "tools/sealserver/Administration.h"
#include "tools/sealserver/SealStore.h"

// Texts of these tests are UTF-8, as the server's own.
class StoreFixture : public testing::Test {
protected:
    // Keys take their time to be made: once for all tests.
    static const TestIdentity& Maker();
    static const TestIdentity& Signer();  // serial number 1234ABCD

    static std::string NationalSeal(SealForm form = SealForm::kGb2020);
    // `nameGbk` as the file has it; its picture is a GIF of two by one dots.
    static std::string EsSeal(const std::string& nameGbk = "Old seal");

    std::string Path() const { return m_folder.Below("seals.db"); }
    std::int64_t AddSigner() { return EnterCertificate(m_store, Signer().certificate, "", ""); }
    std::int64_t AddSeal(const SealEntry& entry) { return EnterSeal(m_store, AddSigner(), entry); }

    TemporaryFolder m_folder;
    SealStore m_store{m_folder.Below("seals.db")};
};

// What the certificate service tells of Signer().
constexpr char kSignerSerial[] = "1234ABCD";
constexpr char kSignerName[] = "CN=Signer";
// The number in NationalSeal().
constexpr char kSealNumber[] = "50010001234";
