#include "road/PhoneRoad.h"

#include "components/certservice/ScanDevice.h"
#include "components/crypto/Signature.h"
#include "platform/closed/CertService.h"

namespace {

constexpr char kPerson[] = "zhang";

std::string PersonsCertId() { return std::string(kKeyFolderPrefix) + kPerson; }

}  // namespace

PhoneRoad::PhoneRoad() : m_phone(ScanFolderIn(InPrefix("keys"))) {}

PhoneRoad::~PhoneRoad() { SetAppId(nullptr, 0); }

void PhoneRoad::MakePhone(KeyKind kind) {
    const KeyHandle key(GenerateKey(kind, 2048));
    CertificateRequest request;
    request.commonName = kPerson;
    std::string certId;
    ASSERT_EQ(m_phone.Store(kPerson, key.get(), Authority(kind).Issue(key.get(), request), kRoadPin,
                            certId),
              0);
    SetAnswer(ScanAnswer::kAccept);
}

void PhoneRoad::SetAnswer(ScanAnswer answer) {
    ASSERT_EQ(WriteScanPhone(InPrefix("keys"), {kPerson, kRoadPin, answer}), 0);
}

void PhoneRoad::Bring(const std::string& name, const std::string& content) {
    ASSERT_EQ(m_phone.WriteFile(PersonsCertId(), name, content), 0);
}

void PhoneRoad::BringGmSeal(const std::string& name) {
    Bring(name, MadeSeal(SealForm::kGm2014, Authority(KeyKind::kSm2), Certificate()));
}

std::string PhoneRoad::Certificate() {
    std::string der;
    EXPECT_EQ(m_phone.ExportCertificate(PersonsCertId(), der), 0);
    return der;
}

std::string PhoneRoad::Files() {
    void* context = nullptr;
    EXPECT_EQ(SOF_Initialize(&context), 0);
    const Handed files = InTwoSteps([&](unsigned char* out, int* outLen) {
        return EnumFilesInDevice(context, kScanCertId, out, outLen);
    });
    EXPECT_EQ(SOF_Finalize(context), 0);
    EXPECT_EQ(files.code, 0);
    return files.bytes;
}

std::string PhoneRoad::Selected() {
    return InTwoSteps(
               [](unsigned char* out, int* outLen) { return GetSelectedCertId(out, outLen); })
        .bytes;
}
