#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/err.h>
#include <openssl/rsa.h>

#include "components/certservice/ServiceCodes.h"
#include "components/certservice/pkcs11/Pkcs11Certificate.h"
#include "components/certservice/pkcs11/Pkcs11Codes.h"
#include "components/certservice/pkcs11/Pkcs11Device.h"
#include "components/certservice/pkcs11/Pkcs11Settings.h"
#include "components/certservice/pkcs11/Pkcs11Signature.h"
#include "components/certservice/pkcs11/Pkcs11Text.h"
#include "components/certservice/tokens/TokenFixture.h"
#include "components/crypto/Signature.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Pkcs11CodesTest, EveryCauseHasItsCode) {
    EXPECT_EQ(ServiceCodeOf(CKR_OK), kServiceOk);
    EXPECT_EQ(ServiceCodeOf(CKR_USER_ALREADY_LOGGED_IN), kServiceOk);
    for (const CK_RV result : {CKR_PIN_INCORRECT, CKR_PIN_INVALID, CKR_PIN_LEN_RANGE})
        EXPECT_EQ(ServiceCodeOf(result), kServicePinWrong);
    EXPECT_EQ(ServiceCodeOf(CKR_PIN_LOCKED), kServiceKeyLocked);
    for (const CK_RV result : {CKR_DEVICE_REMOVED, CKR_TOKEN_NOT_PRESENT,
                               CKR_SESSION_HANDLE_INVALID, CKR_SESSION_CLOSED, CKR_SLOT_ID_INVALID})
        EXPECT_EQ(ServiceCodeOf(result), kServiceKeyRemoved);
    EXPECT_EQ(ServiceCodeOf(CKR_USER_NOT_LOGGED_IN), kServicePinUnavailable);
    EXPECT_EQ(ServiceCodeOf(CKR_FUNCTION_CANCELED), kServicePinCancelled);
    EXPECT_EQ(ServiceCodeOf(CKR_MECHANISM_INVALID), kServiceAlgorithmUnknown);
    EXPECT_EQ(ServiceCodeOf(CKR_DEVICE_ERROR), kServiceTokenFailure);
    EXPECT_EQ(ServiceCodeOf(CKR_VENDOR_DEFINED + 1), kServiceTokenFailure);
}

TEST(Pkcs11TextTest, ATextOfTheTokenIsUtf8OrElseGbk) {
    EXPECT_EQ(TextOfToken("plain"), "plain");
    EXPECT_EQ(TextOfToken("\xE5\x8D\xB0\xE7\xAB\xA0"), "印章");
    EXPECT_EQ(TextOfToken("印章"), "印章");
    EXPECT_EQ(TextOfToken("\x81"), "?");
    EXPECT_EQ(TextOfToken(""), "");
}

TEST(Pkcs11TextTest, ACertIdIsShortAndTellsItsToken) {
    EXPECT_EQ(TokenCertId("0001", "\xA1\x02"), "P11/0001/a102");
    const std::string longest = TokenCertId("0123456789abcdef", std::string(20, '\xFF'));
    EXPECT_EQ(longest.size(), 61u);
    const std::string hashed = TokenCertId("0123456789abcdef", std::string(21, '\xFF'));
    EXPECT_LT(hashed.size(), 64u);
    EXPECT_NE(hashed, TokenCertId("0123456789abcdef", std::string(22, '\xFF')));
    EXPECT_EQ(SerialInCertId(hashed), "0123456789abcdef");
    EXPECT_THAT(SerialInCertId("P11/0001"), IsEmpty());
    EXPECT_THAT(SerialInCertId("DevKeys/0001/a"), IsEmpty());
}

CK_TOKEN_INFO TokenInfo(std::string_view serial, std::string_view label) {
    CK_TOKEN_INFO info{};
    const auto fill = [](unsigned char* field, std::size_t size, std::string_view text) {
        std::fill_n(field, size, ' ');
        std::copy(text.begin(), text.end(), field);
    };
    fill(info.serialNumber, sizeof info.serialNumber, serial);
    fill(info.label, sizeof info.label, label);
    fill(info.model, sizeof info.model, "Model");
    fill(info.manufacturerID, sizeof info.manufacturerID, "Maker");
    return info;
}

TEST(Pkcs11TokenTest, ASerialNumberThatDoesNotServeIsReplacedByADigestOfTheDescription) {
    EXPECT_EQ(Pkcs11Token::SerialOf(TokenInfo("00-1_a.B", "x")), "00-1_a.B");
    EXPECT_EQ(Pkcs11Token::SerialOf(TokenInfo("0123456789abcdef", "x")), "0123456789abcdef");
    const std::string none = Pkcs11Token::SerialOf(TokenInfo("", "x"));
    EXPECT_EQ(none.size(), 16u);
    EXPECT_NE(none, Pkcs11Token::SerialOf(TokenInfo("", "y")));
    EXPECT_NE(none, Pkcs11Token::SerialOf(TokenInfo("a/b", "x")));
    EXPECT_EQ(none, Pkcs11Token::SerialOf(TokenInfo("", "x")));
}

TEST(Pkcs11SignatureTest, ADigestInfoIsWhatTheRsaSignatureHolds) {
    const KeyHandle key = MakeRsaKey();
    for (const HashAlgorithm hash : {HashAlgorithm::kSha1, HashAlgorithm::kSha256}) {
        const std::string digest = Digest(hash, "contract");
        const std::string signature = SignDigest(key.get(), hash, digest);
        const KeyContextHandle context(EVP_PKEY_CTX_new(key.get(), nullptr));
        ASSERT_EQ(EVP_PKEY_verify_recover_init(context.get()), 1);
        ASSERT_EQ(EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PADDING), 1);
        std::string recovered(512, '\0');
        std::size_t length = recovered.size();
        ASSERT_EQ(EVP_PKEY_verify_recover(
                      context.get(), reinterpret_cast<unsigned char*>(recovered.data()), &length,
                      reinterpret_cast<const unsigned char*>(signature.data()), signature.size()),
                  1);
        recovered.resize(length);
        EXPECT_EQ(DigestInfo(hash, digest), recovered);
    }
}

TEST(Pkcs11SignatureTest, ADigestOfAnotherLengthThanTheHashsMakesNoDigestInfo) {
    EXPECT_THAT(DigestInfo(HashAlgorithm::kSha256, std::string(20, 'd')), IsEmpty());
    EXPECT_THAT(DigestInfo(HashAlgorithm::kSha1, ""), IsEmpty());
    EXPECT_EQ(DigestInfo(HashAlgorithm::kSm3, std::string(32, 'd')).size(), 50u);
}

TEST(Pkcs11SignatureTest, BareSm2NumbersBecomeDerWithTheirSigns) {
    const std::string small = std::string(31, '\0') + "\1" + std::string(31, '\0') + "\2";
    EXPECT_EQ(Sm2SignatureDer(small), std::string("\x30\x06\x02\x01\x01\x02\x01\x02", 8));
    const std::string der = Sm2SignatureDer(std::string(64, '\xFF'));
    EXPECT_EQ(der.size(), 72u);
    EXPECT_EQ(Sm2SignatureDer(der), der);
    EXPECT_THAT(Sm2SignatureDer(der + "x"), IsEmpty());
    EXPECT_THAT(Sm2SignatureDer(std::string(63, '\1')), IsEmpty());
    EXPECT_THAT(Sm2SignatureDer(""), IsEmpty());
}

TEST(Pkcs11CertificateTest, ACertificateTellsItsNameItsStartAndWhetherItIsAnAuthoritys) {
    const KeyHandle key = MakeRsaKey();
    const CertificateFacts facts = InspectCertificate(MakeCertificate(key.get(), {.firstDay = 31}));
    EXPECT_TRUE(facts.readable);
    EXPECT_FALSE(facts.isAuthority);
    EXPECT_EQ(facts.commonName, "Li Lei");
    EXPECT_EQ(facts.notBefore, "20260201000000Z");
    EXPECT_TRUE(InspectCertificate(MakeCertificate(key.get(), {.authority = true})).isAuthority);
    EXPECT_THAT(InspectCertificate(MakeCertificate(key.get(), {.commonName = ""})).commonName,
                IsEmpty());
}

TEST(Pkcs11CertificateTest, WhatIsNoCertificateIsUnreadable) {
    ERR_clear_error();
    ERR_raise(ERR_LIB_USER, 42);
    EXPECT_FALSE(InspectCertificate("").readable);
    EXPECT_FALSE(InspectCertificate("no certificate").readable);
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 42) << "the host's own error";
    EXPECT_EQ(ERR_get_error(), 0u);
    const KeyHandle key = MakeRsaKey();
    const std::string der = MakeCertificate(key.get());
    EXPECT_FALSE(InspectCertificate(der.substr(0, der.size() - 1)).readable);
}

class Pkcs11SettingsTest : public testing::Test {
protected:
    TemporaryPrefix m_prefix;
};

TEST_F(Pkcs11SettingsTest, WithoutValuesThereIsNoModule) {
    const Pkcs11Settings settings = ReadPkcs11Settings();
    EXPECT_THAT(settings.modules, IsEmpty());
    EXPECT_EQ(settings.sm2Mechanism, 0u);
    EXPECT_EQ(settings.sm2KeyType, 0u);
    EXPECT_THAT(OpenPkcs11Devices(), IsEmpty());
}

TEST_F(Pkcs11SettingsTest, PathsAreSeparatedBySemicolonsAndCountOnce) {
    SetServicePath("Pkcs11Modules", ";/a/印章.so;;/b.so;/a/印章.so;");
    SetServiceNumber("Pkcs11Sm2Mechanism", 0x80000103);
    SetServiceNumber("Pkcs11Sm2KeyType", 0x80000001);
    const Pkcs11Settings settings = ReadPkcs11Settings();
    EXPECT_THAT(settings.modules, ElementsAre("/a/印章.so", "/b.so"));
    EXPECT_EQ(settings.sm2Mechanism, 0x80000103u);
    EXPECT_EQ(settings.sm2KeyType, 0x80000001u);
}

TEST_F(Pkcs11SettingsTest, AModuleThatIsNotThereIsLeftOut) {
    const std::string notThere = m_prefix.Below("not-there");
    SetServicePath("Pkcs11Modules", notThere + ";" + FAKE_PKCS11_MODULE);
    EXPECT_EQ(OpenPkcs11Devices().size(), 1u);
    SetServicePath("Pkcs11Modules", notThere);
    EXPECT_THAT(OpenPkcs11Devices(), IsEmpty());
}

TEST_F(Pkcs11SettingsTest, ALibraryThatIsNoPkcs11ModuleIsLeftOut) {
    SetServicePath("Pkcs11Modules", OTHER_LIBRARY);
    EXPECT_THAT(OpenPkcs11Devices(), IsEmpty());
}

}  // namespace
