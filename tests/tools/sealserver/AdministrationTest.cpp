// Which certificates and seals can be entered, and as what.

#include "tools/sealserver/Administration.h"

#include "components/certservice/Certificate.h"
#include "tests/tools/sealserver/StoreFixture.h"
#include "tools/sealserver/OfferedSeal.h"

namespace {

class AdministrationTest : public StoreFixture {
protected:
    StoredSeal Added(const SealEntry& entry) { return *m_store.Seal(AddSeal(entry)); }
};

TEST_F(AdministrationTest, ACertificatesFileFillsBothTexts) {
    const auto stored = m_store.Certificate(AddSigner());
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->serial, kSignerSerial);
    EXPECT_EQ(stored->name, kSignerName);
    const std::string pem = "text before\n" + PemOf(ParseCertificate(Signer().certificate).get());
    EXPECT_EQ(EnterCertificate(m_store, pem, "", ""), stored->id);
}

TEST_F(AdministrationTest, NamesComeAsTheCertificateServiceTellsThem) {
    const TestIdentity other = MakeIdentity(KeyKind::kRsa, {.name = "印章 A, B", .serial = 0x0A0B});
    const auto certificate = ReadOfferedCertificate(other.certificate);
    ASSERT_TRUE(certificate);
    EXPECT_EQ(certificate->serial, "0A0B");
    EXPECT_EQ(certificate->name, "CN=印章 A\\, B");
}

TEST_F(AdministrationTest, WhatIsNoCertificateIsRefused) {
    EXPECT_THROW(EnterCertificate(m_store, "text", "", ""), Refusal);
    EXPECT_THROW(EnterCertificate(m_store, NationalSeal(), "", ""), Refusal);
    EXPECT_THROW(EnterCertificate(m_store, "", "", "CN=x"), Refusal);
    EXPECT_THROW(EnterCertificate(m_store, "", "12G4", "CN=x"), Refusal);
    EXPECT_THROW(EnterCertificate(m_store, "", "-- :", "CN=x"), Refusal);
    EXPECT_THROW(EnterCertificate(m_store, "", "12", "CN=\xFF"), Refusal);
    EXPECT_THROW(EnterCertificate(m_store, "", "12", "CN=\n"), Refusal);
    EXPECT_THROW(EnterCertificate(m_store, "", "12", std::string(2049, 'x')), Refusal);
    EXPECT_THROW(EnterCertificate(m_store, Signer().certificate, "12", ""), Refusal);
    EXPECT_THROW(
        EnterCertificate(m_store, Signer().certificate + std::string(kMaxCertificateFileBytes, ' '),
                         "", ""),
        Refusal);
    EXPECT_TRUE(m_store.Certificates().empty());
}

TEST_F(AdministrationTest, ASealBringsItsNumberAndName) {
    for (const SealForm form : {SealForm::kGm2014, SealForm::kGb2020, SealForm::kGm2025}) {
        const StoredSeal seal = Added({NationalSeal(form), "", ""});
        EXPECT_EQ(seal.number, kSealNumber);
        EXPECT_EQ(seal.sealId, kSealNumber);
        EXPECT_EQ(seal.name, "测试章");
        EXPECT_EQ(seal.hash.size(), 64u);
        m_store.RemoveSeal(seal.id);
    }
    EXPECT_EQ(Added({NationalSeal(), " 7 ", " 财务 "}).number, "7");
    EXPECT_EQ(m_store.Seals(AddSigner()).back().name, "财务");
}

TEST_F(AdministrationTest, AnEsSealIsNumberedAndItsNameIsGbk) {
    const StoredSeal first = Added({EsSeal("\xD3\xA1\xD5\xC2"), "", ""});
    EXPECT_EQ(first.number, "1");
    EXPECT_EQ(first.name, "印章");
    EXPECT_EQ(first.form, "ES");
    EXPECT_EQ(first.sealId, "");
    EXPECT_EQ(Added({EsSeal(""), "", ""}).number, "2");
    EXPECT_EQ(m_store.Seals(AddSigner()).back().name, "印章");
}

TEST_F(AdministrationTest, AFileThatIsThereIsAddedOnceMoreUnderAnotherNumberAlone) {
    const auto refusal = [this](const std::string& file) -> std::string {
        try {
            AddSeal({file, "", "another name"});
        } catch (const Refusal& refused) {
            return refused.what();
        }
        return "added";
    };
    Added({EsSeal(), "7", ""});
    EXPECT_EQ(refusal(EsSeal()),
              "The certificate has this seal file already, under the number 7. "
              "Give another number to add it once more.");
    EXPECT_EQ(refusal(EsSeal("Another seal")), "added");
    const std::string national = NationalSeal();
    Added({national, "", ""});
    EXPECT_EQ(refusal(national),
              "The certificate has this seal file already, under the number 50010001234. "
              "Give another number to add it once more.");
    EXPECT_EQ(Added({EsSeal(), "8", ""}).number, "8");
    const std::int64_t other = EnterCertificate(m_store, "", "99", "CN=Other");
    EXPECT_GT(EnterSeal(m_store, other, {EsSeal(), "", ""}), 0);
}

TEST_F(AdministrationTest, WhatIsNoSealIsRefused) {
    const std::int64_t certificate = AddSigner();
    const std::string seal = NationalSeal();
    const std::string es = EsSeal();
    for (const std::string& bad :
         {std::string(), std::string("ES"), es.substr(0, 327), es.substr(0, es.size() - 1),
          seal.substr(0, seal.size() - 1), seal + "x", Signer().certificate,
          es + std::string(kMaxSealFileBytes, ' ')}) {
        EXPECT_THROW(EnterSeal(m_store, certificate, {bad, "1", "n"}), Refusal);
    }
    EXPECT_THROW(EnterSeal(m_store, certificate, {es, std::string(201, '1'), "n"}), Refusal);
    EXPECT_THROW(EnterSeal(m_store, certificate, {es, "1", "a\rb"}), Refusal);
    EXPECT_THROW(EnterSeal(m_store, certificate, {es, "1", "\xD3\xA1\xD5\xC2"}), Refusal);
    EXPECT_THROW(EnterSeal(m_store, certificate + 1, {es, "1", "n"}), Refusal);
    EXPECT_TRUE(m_store.Seals(certificate).empty());
}

TEST_F(AdministrationTest, PicturesAreShownByTheirOwnFirstBytes) {
    const auto seal = ReadOfferedSeal(NationalSeal());
    ASSERT_TRUE(seal);
    EXPECT_EQ(PictureType(seal->picture), "image/gif");
    EXPECT_EQ(PictureType("<svg xmlns='http://www.w3.org/2000/svg'>"), "");
    EXPECT_EQ(PictureType("<!doctype html>"), "");
}

TEST_F(AdministrationTest, ASealOfOtherSignersIsTold) {
    const auto seal = ReadOfferedSeal(NationalSeal());
    ASSERT_TRUE(seal);
    EXPECT_EQ(WarningAbout(*seal, *m_store.Certificate(AddSigner())), "");
    EXPECT_NE(WarningAbout(*seal, {1, "5678", "CN=Maker", Maker().certificate}), "");
    EXPECT_EQ(WarningAbout(*seal, {1, "5678", "CN=Maker", ""}), "");
    EXPECT_EQ(
        WarningAbout(*ReadOfferedSeal(EsSeal()), {1, "5678", "CN=Maker", Maker().certificate}), "");
}

TEST_F(AdministrationTest, WhatIsStoredIsWarnedAboutUntilItIsGone) {
    EXPECT_EQ(WarningAboutSeal(m_store, AddSeal({NationalSeal(), "", ""})), "");
    const std::int64_t other = EnterCertificate(m_store, Maker().certificate, "", "");
    const std::int64_t seal = EnterSeal(m_store, other, {NationalSeal(), "", ""});
    EXPECT_NE(WarningAboutSeal(m_store, seal), "");
    m_store.RemoveCertificate(other);
    EXPECT_EQ(WarningAboutSeal(m_store, seal), "");
}

}  // namespace
