#include "seal/ShownSeals.h"

#include <gtest/gtest.h>

#include <cstring>

namespace {

// The bytes are only looked at.
unsigned char* BytesOf(const char* text) {
    return reinterpret_cast<unsigned char*>(const_cast<char*>(text));
}

SealRecord SealOf(const char* file, const char* picture) {
    SealRecord seal;
    seal.sealData = BytesOf(file);
    seal.sealDataLen = static_cast<int>(std::strlen(file));
    seal.picData = BytesOf(picture);
    seal.picLen = static_cast<int>(std::strlen(picture));
    return seal;
}

CertRecord CertOf(const char* certId, std::vector<SealRecord> seals) {
    CertRecord cert;
    std::strcpy(cert.certId, certId);
    cert.seals = std::move(seals);
    return cert;
}

std::vector<CertRecord> List() { return {CertOf("one", {SealOf("file", "picture")})}; }

TEST(ShownSealsTest, AListThatIsAsItWasHasItsCertificatesAndSealsInTheirPlaces) {
    const std::vector<CertRecord> certs = List();
    const CShownSeals shown(certs);
    EXPECT_EQ(shown.FindCert(certs, 0), &certs[0]);
    EXPECT_EQ(shown.FindSeal(certs, 0, 0), &certs[0].seals[0]);
    const std::vector<CertRecord> again = List();
    EXPECT_EQ(shown.FindSeal(again, 0, 0), &again[0].seals[0]);
}

TEST(ShownSealsTest, APlaceOutsideOfEitherListIsNone) {
    const std::vector<CertRecord> certs = List();
    const CShownSeals shown(certs);
    for (const int index : {-2, -1, 1, 2}) {
        EXPECT_EQ(shown.FindCert(certs, index), nullptr);
        EXPECT_EQ(shown.FindSeal(certs, index, 0), nullptr);
        EXPECT_EQ(shown.FindSeal(certs, 0, index), nullptr);
    }
    EXPECT_EQ(shown.FindCert({}, 0), nullptr);
    EXPECT_EQ(CShownSeals().FindCert(certs, 0), nullptr);
    EXPECT_EQ(CShownSeals({CertOf("one", {})}).FindSeal(certs, 0, 0), nullptr);
    EXPECT_EQ(shown.FindSeal({CertOf("one", {})}, 0, 0), nullptr);
}

TEST(ShownSealsTest, AnotherIdentifierIsAnotherCertificateAndItsSealsAreOthers) {
    const CShownSeals shown(List());
    const std::vector<CertRecord> other = {CertOf("two", {SealOf("file", "picture")})};
    EXPECT_EQ(shown.FindCert(other, 0), nullptr);
    EXPECT_EQ(shown.FindSeal(other, 0, 0), nullptr);
}

TEST(ShownSealsTest, AnotherFileOrPictureIsAnotherSeal) {
    const CShownSeals shown(List());
    for (const SealRecord& seal : {SealOf("other", "picture"), SealOf("file", "other"),
                                   SealOf("file", ""), SealOf("", "picture"), SealRecord()}) {
        const std::vector<CertRecord> other = {CertOf("one", {seal})};
        EXPECT_NE(shown.FindCert(other, 0), nullptr);
        EXPECT_EQ(shown.FindSeal(other, 0, 0), nullptr);
    }
}

TEST(ShownSealsTest, BytesThatAreNullCountAsNoneWhateverTheirLength) {
    SealRecord seal;
    seal.picLen = 5;
    seal.sealDataLen = -1;
    const std::vector<CertRecord> certs = {CertOf("one", {seal})};
    EXPECT_NE(CShownSeals(certs).FindSeal(certs, 0, 0), nullptr);
}

}  // namespace
