#include "road/RoadTest.h"

#include <ctime>
#include <filesystem>
#include <fstream>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/ServiceSettings.h"
#include "components/crypto/Signature.h"
#include "components/seallibrary/EsSeal.h"
#include "components/seallibrary/SealMaker.h"
#include "library/bridge/ExportCalls.h"
#include "support/Program.h"

const char* const kCertServiceFile = ROAD_CERT_SERVICE;

std::string SealPicture() {
    // A GIF of one transparent pixel.
    constexpr char kGif[] =
        "GIF89a\x01\x00\x01\x00\x80\x00\x00\xFF\x00\x00\x00\x00\x00\x21\xF9\x04\x01\x00\x00\x00\x00"
        "\x2C\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02\x44\x01\x00\x3B";
    return {kGif, sizeof kGif - 1};
}

std::string MadeEsSeal() { return MakeEsSeal("合同章", SealPicture()); }

std::string MadeSeal(SealForm form, const DevelopmentCa& maker, const std::string& signer) {
    const KeyKind kind = KindOfKey(maker.Key());
    const KeyHandle key(GenerateKey(kind, 2048));
    CertificateRequest request;
    request.commonName = "Seal Maker";
    SealOrder order;
    order.form = form;
    order.esId = "ROAD-1";
    order.name = "contract seal";
    order.signerCertificates = {signer};
    order.picture = SealPicture();
    order.widthMm = 40;
    order.heightMm = 30;
    order.created = std::time(nullptr) - 60;
    order.validFrom = order.created;
    order.validTo = order.created + 86'400;
    const auto sign = [&](std::string_view tbs) {
        const bool sm2 = kind == KeyKind::kSm2;
        return SignData(key.get(), sm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256, tbs);
    };
    std::string error;
    const std::string seal = MakeSeal(order, maker.Issue(key.get(), request), sign, error);
    EXPECT_FALSE(seal.empty()) << error;
    return seal;
}

RoadTest::RoadTest() : m_keys(InPrefix("keys")) {
    m_prefix.RegisterCertService(kCertServiceFile);
    SetServicePath("KeyFolder", InPrefix("keys"));
    SetServicePath("TrustFolder", InPrefix("trust"));
    std::filesystem::create_directory(InPrefix("keys"));
    std::filesystem::create_directory(InPrefix("trust"));
}

RoadTest::~RoadTest() {
    UnInitKVLLib();
    ClearSelectKeyID();
    SetGetStampPictureMode(1);
}

std::string RoadTest::WriteFile(const std::string& name, const std::string& content) const {
    std::ofstream(InPrefix(name), std::ios::binary) << content;
    return InPrefix(name);
}

std::string RoadTest::KeyPath(const std::string& certId) const {
    return InPrefix("keys/" + certId.substr(sizeof kKeyFolderPrefix - 1));
}

DevelopmentCa& RoadTest::Authority(KeyKind kind) {
    std::unique_ptr<DevelopmentCa>& authority = m_authorities[kind];
    int code = 0;
    if (!authority) authority = DevelopmentCa::Open(kind, InPrefix("ca"), InPrefix("trust"), code);
    return *authority;
}

std::string RoadTest::MakeKey(KeyKind kind, const std::string& name, CertificateRequest request,
                              const DevelopmentCa* authority) {
    const KeyHandle key(GenerateKey(kind, 2048));
    if (request.commonName.empty()) request.commonName = "张三";
    const DevelopmentCa& issuer = authority ? *authority : Authority(kind);
    std::string certId;
    EXPECT_EQ(m_keys.Store(name, key.get(), issuer.Issue(key.get(), request), kRoadPin, certId), 0);
    return certId;
}

void RoadTest::AddSeal(const std::string& certId, SealForm form) {
    std::string certificate;
    ASSERT_EQ(m_keys.ExportCertificate(certId, certificate), 0);
    const KeyKind kind = KindOfKey(ParseCertificate(certificate).get());
    const std::string seal = MadeSeal(form, Authority(kind), certificate);
    ASSERT_EQ(m_keys.WriteFile(certId, form == SealForm::kGm2014 ? "SEAL01" : "GBESEAL01", seal),
              0);
}

void RoadTest::AddEsSeal(const std::string& certId, const std::string& fileName) {
    ASSERT_EQ(m_keys.WriteFile(certId, fileName, MadeEsSeal()), 0);
}

int RoadTest::Login(const std::string& certId, const char* pin) {
    return LoginIn(certId.c_str(), pin);
}

Handed RoadTest::Picture() {
    return InTwoSteps([](unsigned char* out, int* outLen) { return GetSealInfo(out, outLen); });
}

Handed RoadTest::SignP1(const std::string& data) {
    return InTwoSteps([&](unsigned char* out, int* outLen) { return P1Sign(data, out, outLen); });
}

Handed RoadTest::SignP7(const std::string& data) {
    return InTwoSteps(
        [&](unsigned char* out, int* outLen) { return P7Sign(data, "road", out, outLen); });
}

// In mode 0 both lengths are 128 larger than what is written.
Handed RoadTest::SignP7File(const std::string& path) {
    Handed made = InTwoSteps(
        [&](unsigned char* out, int* outLen) { return P7SignFile(path, "road", out, outLen); });
    if (made.code == 0 && GetEsealMode() == 0) made.bytes.resize(made.bytes.size() - 128);
    return made;
}

testing::AssertionResult RoadTest::OpenSsl(const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {"/usr/bin/openssl"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const ProgramOutcome outcome = RunProgram(all);
    if (outcome.exitCode == 0) return testing::AssertionSuccess();
    return testing::AssertionFailure() << outcome.out << outcome.error;
}

testing::AssertionResult RoadTest::CmsAccepts(const std::string& message,
                                              const std::string& path) const {
    return OpenSsl({"cms", "-verify", "-binary", "-inform", "DER", "-in",
                    WriteFile("message.p7s", message), "-content", path, "-CAfile",
                    InPrefix("trust/velmora-development-rsa.pem"), "-purpose", "any", "-out",
                    "/dev/null"});
}

testing::AssertionResult RoadTest::DigestAccepts(const std::string& signature,
                                                 const std::string& path,
                                                 const std::string& certificate) const {
    const std::string key = InPrefix("public.pem");
    const auto taken =
        OpenSsl({"x509", "-inform", "DER", "-in", WriteFile("certificate.der", certificate),
                 "-pubkey", "-noout", "-out", key});
    if (!taken) return taken;
    return OpenSsl({"dgst", "-sha256", "-verify", key, "-signature",
                    WriteFile("signature.bin", signature), path});
}
