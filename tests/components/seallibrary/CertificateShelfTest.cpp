#include "components/seallibrary/CertificateShelf.h"

#include <gtest/gtest.h>

#include "tests/components/seallibrary/TestPki.h"

namespace {

class CertificateShelfTest : public testing::Test {
protected:
    static std::string MakeCertificate(long serial) {
        return MakeIdentity(KeyKind::kSm2, {.serial = serial}).certificate;
    }
    // The object that the shelf has for it; null if it can't be read.
    const X509* Read(const std::string& der) {
        CSealCertificate certificate;
        return m_shelf.Read(der, certificate) ? certificate.Get() : nullptr;
    }

    CCertificateShelf m_shelf;
};

TEST_F(CertificateShelfTest, ACertificateIsReadOnceAndTellsItsOwn) {
    const std::string first = MakeCertificate(0x11);
    const std::string second = MakeCertificate(0x22);
    CSealCertificate certificate;
    ASSERT_TRUE(m_shelf.Read(first, certificate));
    EXPECT_EQ(certificate.SerialNumber(), "11");
    EXPECT_TRUE(certificate.IsValidAt(kTestNow));
    const X509* const object = certificate.Get();
    ASSERT_TRUE(m_shelf.Read(second, certificate));
    EXPECT_EQ(certificate.SerialNumber(), "22");
    EXPECT_EQ(Read(first), object);
}

TEST_F(CertificateShelfTest, WhatCantBeReadIsRefusedEachTime) {
    const std::string good = MakeCertificate(0x11);
    ASSERT_NE(Read(good), nullptr);
    for (const std::string& der : {std::string(), good + "x", good.substr(1)}) {
        EXPECT_EQ(Read(der), nullptr);
        EXPECT_EQ(Read(der), nullptr);
    }
}

TEST_F(CertificateShelfTest, TheOneAskedForLongestAgoGivesWay) {
    std::vector<std::string> ders;
    std::vector<CSealCertificate> kept(CCertificateShelf::kMost + 1);
    for (std::size_t i = 0; i < kept.size(); ++i) ders.push_back(MakeCertificate(1 + i));
    for (std::size_t i = 0; i < CCertificateShelf::kMost; ++i)
        ASSERT_TRUE(m_shelf.Read(ders[i], kept[i]));
    EXPECT_EQ(Read(ders[0]), kept[0].Get());
    ASSERT_TRUE(m_shelf.Read(ders.back(), kept.back()));
    EXPECT_EQ(Read(ders[0]), kept[0].Get());
    EXPECT_NE(Read(ders[1]), kept[1].Get());
}

TEST_F(CertificateShelfTest, ACertificateOutlivesItsPlace) {
    CSealCertificate certificate;
    {
        CCertificateShelf shelf;
        ASSERT_TRUE(shelf.Read(MakeCertificate(0x11), certificate));
    }
    EXPECT_EQ(certificate.SerialNumber(), "11");
}

}  // namespace
