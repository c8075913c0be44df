#include "components/seallibrary/RevocationTime.h"

#include <gtest/gtest.h>
#include <openssl/pem.h>

#include "components/seallibrary/SealCodes.h"
#include "foundation/Text.h"
#include "tests/components/crypto/PassPhraseQuestions.h"
#include "tests/components/seallibrary/TestPki.h"

namespace {

class RevocationTimeTest : public testing::Test {
protected:
    std::string Pem() const {
        const auto* at = reinterpret_cast<const unsigned char*>(m_list.data());
        const RevocationListHandle list(
            d2i_X509_CRL(nullptr, &at, static_cast<long>(m_list.size())));
        const BioHandle bio(BIO_new(BIO_s_mem()));
        PEM_write_bio_X509_CRL(bio.get(), list.get());
        char* text = nullptr;
        const long length = BIO_get_mem_data(bio.get(), &text);
        return std::string(text, static_cast<std::size_t>(length));
    }

    TestIdentity m_issuer = MakeIdentity(KeyKind::kSm2);
    std::string m_list = MakeRevocationList(m_issuer, 0x0ABC12, kTestNow);
};

TEST_F(RevocationTimeTest, ATimeBeforeTheRevocationIsAccepted) {
    EXPECT_EQ(CheckRevocationTime(m_list, "ABC12", kTestNow - 1), kSealOk);
}

TEST_F(RevocationTimeTest, TheMomentOfTheRevocationAndAllAfterItAreNot) {
    EXPECT_EQ(CheckRevocationTime(m_list, "ABC12", kTestNow), kSealRevokedBefore);
    EXPECT_EQ(CheckRevocationTime(m_list, "ABC12", kTestNow + 1), kSealRevokedBefore);
}

TEST_F(RevocationTimeTest, ASerialNumberMayBeWrittenAsHostsWriteIt) {
    for (const char* serial : {"abc12", "0ABC12", "0x0abc12", "0A:BC:12", "0A BC 12"})
        EXPECT_EQ(CheckRevocationTime(m_list, serial, kTestNow), kSealRevokedBefore) << serial;
}

TEST_F(RevocationTimeTest, ASerialNumberThatTheListLacksProvesNothing) {
    EXPECT_EQ(CheckRevocationTime(m_list, "ABC13", kTestNow - 1), kSealSerialNotListed);
}

TEST_F(RevocationTimeTest, WhatIsNoSerialNumberIsABadArgument) {
    for (const std::string& serial : {std::string(), std::string("0x"), std::string("XYZ"),
                                      std::string("-1"), std::string(129, '1')})
        EXPECT_EQ(CheckRevocationTime(m_list, serial, kTestNow), kSealBadArgument) << serial;
}

TEST_F(RevocationTimeTest, AListInPemIsReadAsWell) {
    EXPECT_EQ(CheckRevocationTime(Pem(), "ABC12", kTestNow), kSealRevokedBefore);
    EXPECT_EQ(ReadRevocationList(Pem()), m_list);
    EXPECT_EQ(ReadRevocationList(m_list), m_list);
}

TEST_F(RevocationTimeTest, AListThatSaysItIsEncryptedIsDamagedAndAsksForNoPassPhrase) {
    const PassPhraseQuestions questions;
    EXPECT_EQ(CheckRevocationTime(EncryptedPem("X509 CRL"), "ABC12", kTestNow),
              kSealRevocationListDamaged);
    EXPECT_EQ(ReadRevocationList(EncryptedPem("X509 CRL")), "");
    EXPECT_EQ(questions.Count(), 0);
}

TEST_F(RevocationTimeTest, AListInBareBase64IsReadAsWell) {
    std::string text = Base64Encode(m_list);
    EXPECT_EQ(ReadRevocationList(text), m_list);
    for (std::size_t at = 64; at < text.size(); at += 66) text.insert(at, "\r\n");
    EXPECT_EQ(CheckRevocationTime(text + "\n", "ABC12", kTestNow), kSealRevokedBefore);
    EXPECT_EQ(ReadRevocationList(text + "!"), "");
    EXPECT_EQ(ReadRevocationList("=" + text.substr(1)), "");
    EXPECT_EQ(ReadRevocationList(text.substr(4)), "");
}

// Some twenty thousand entries, half a megabyte.
TEST_F(RevocationTimeTest, ALongListIsSearchedToItsEnds) {
    const std::string list = MakeLongRevocationList(m_issuer, 20'000, kTestNow);
    ASSERT_GT(list.size(), 400'000u);
    for (const char* serial : {"10000", "12345", "14E1F"}) {
        EXPECT_EQ(CheckRevocationTime(list, serial, kTestNow - 1), kSealOk) << serial;
        EXPECT_EQ(CheckRevocationTime(list, serial, kTestNow), kSealRevokedBefore) << serial;
    }
    EXPECT_EQ(CheckRevocationTime(list, "14E20", kTestNow - 1), kSealSerialNotListed);
    EXPECT_EQ(CheckRevocationTime(list, "FFFF", kTestNow - 1), kSealSerialNotListed);
    EXPECT_EQ(ReadRevocationList(list), list);
}

TEST_F(RevocationTimeTest, ADamagedListIsTold) {
    for (const std::string& list : {std::string(), std::string("no list"), m_list + "x",
                                    m_list.substr(0, m_list.size() - 1)}) {
        EXPECT_EQ(CheckRevocationTime(list, "ABC12", kTestNow), kSealRevocationListDamaged);
        EXPECT_EQ(ReadRevocationList(list), "");
    }
}

}  // namespace
