#include "SignatureVerdict.h"

#include <algorithm>
#include <ctime>

#include "CertServiceClient.h"
#include "FailedStep.h"
#include "ResultText.h"
#include "SealTimeStampVerdict.h"
#include "SignatureTime.h"
#include "TerminalText.h"
#include "TwoStep.h"
#include "components/certservice/ServiceCodes.h"
#include "components/certservice/SignedMessage.h"
#include "components/picture/PictureHeader.h"
#include "components/seallibrary/SealSignature.h"
#include "components/seallibrary/SealTime.h"
#include "foundation/Registry.h"
#include "include/TesmarkOpt.h"
#include "platform/closed/SealLibrary.h"

namespace {

constexpr int kSignerCertificate = 2;

// As docs/certservice.md numbers them.
enum CertificateFieldNumber {
    kSerial = 2,
    kKeyType = 3,
    kIssuer = 5,
    kNotBefore = 11,
    kNotAfter = 12,
    kCommonName = 17,
    kSubject = 33
};
enum TimeStampFieldNumber {
    kStampTime = 1,
    kStampSerial = 2,
    kStampPolicy = 3,
    kStampAuthority = 4,
    kStampHash = 6
};

int LengthOf(std::string_view text) { return static_cast<int>(text.size()); }

// Where the first element within the outer one begins; none if there is no outer SEQUENCE.
std::size_t FirstInside(std::string_view bytes) {
    if (bytes.size() < 3 || bytes[0] != 0x30) return std::string_view::npos;
    const auto length = static_cast<unsigned char>(bytes[1]);
    const std::size_t header = length > 0x80 ? 2u + (length - 0x80u) : 2u;
    return header < bytes.size() ? header : std::string_view::npos;
}

std::string CertificateField(const std::string& der, int field) {
    std::string value;
    FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return ParseCertFieldData(Bytes(der), LengthOf(der), field, out, outLen);
        },
        value);
    return Utf8FromGbk(value.substr(0, value.find('\0')));
}

SignerInfo ReadSigner(std::string_view signature) {
    SignerInfo signer;
    FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return ParseP7FieldData(Bytes(signature), LengthOf(signature), kSignerCertificate, out,
                                    outLen);
        },
        signer.certificate);
    if (signer.certificate.empty()) return signer;
    const auto field = [&](int number) { return CertificateField(signer.certificate, number); };
    signer.name = field(kCommonName);
    signer.serial = field(kSerial);
    signer.issuer = field(kIssuer);
    signer.subject = field(kSubject);
    signer.keyType = field(kKeyType);
    signer.notBefore = SpacedTime(field(kNotBefore));
    signer.notAfter = SpacedTime(field(kNotAfter));
    return signer;
}

VerdictStep StepFor(const char* name, int code) {
    if (code == 0) return {name, true, "", 0, ""};
    return {name, false, FailedStepOf(code), code, ResultText(code)};
}

int VerifyBySignature(std::string_view signature, const SignedData& data) {
    if (!data.path.empty()) {
        return P7VerifyBigFile(data.path.c_str(), Bytes(signature), LengthOf(signature));
    }
    return P7VerifyData(Bytes(data.bytes), LengthOf(data.bytes), Bytes(signature),
                        LengthOf(signature));
}

// The library hands out the seal library's last word, which for a PKCS#7 is only that this is no
// seal signature, and of a file its own code: what is wrong the component knows that judged it.
int CauseOf(int code, const SignatureVerdict& verdict, std::string_view signature,
            const SignedData& data) {
    int told = 0;
    if (verdict.kind == SignatureKind::kPkcs7) {
        const CertServiceClient service;
        told = data.path.empty()
                   ? service.VerifyMessage(signature, data.bytes)
                   : service.VerifySm2File(signature, data.path, verdict.signer.certificate);
    } else if (!data.path.empty()) {
        told =
            TVK_Verify_SES_Sign_BigFile(Bytes(signature), LengthOf(signature), data.path.c_str());
    }
    return told ? told : code;
}

// To the service empty data are none, and it verifies what the message holds.
bool HoldsContent(std::string_view signature) {
    const auto message = SignedMessage::Parse(signature);
    std::string content;
    return !message || message->Field(1, content) != 0 || !content.empty();
}

VerdictStep JudgeValue(const SignatureVerdict& verdict, std::string_view signature,
                       const SignedData& data) {
    const int code = VerifyBySignature(signature, data);
    const bool namedEmpty = !data.inMessage && data.path.empty() && data.bytes.empty();
    if (code == 0 && namedEmpty && verdict.kind == SignatureKind::kPkcs7 &&
        HoldsContent(signature)) {
        return StepFor("signature", kServiceDigestMismatch);
    }
    return StepFor("signature", code ? CauseOf(code, verdict, signature, data) : 0);
}

// Revocation is compared with `time`; -3043 is about today.
VerdictStep JudgeCertificate(const std::string& certificate, const std::string& time) {
    return StepFor("certificate",
                   VerifySignCert(Bytes(certificate), LengthOf(certificate), time.c_str()));
}

VerdictStep JudgeTime(const std::string& certificate, const std::string& time) {
    return StepFor("signing time",
                   VerifySignTime(Bytes(certificate), LengthOf(certificate), time.c_str()));
}

std::string StampField(std::string_view signature, int field, int* code = nullptr) {
    std::string value;
    const int result = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return GetTimeStampInfo(Bytes(signature), LengthOf(signature), field, out, outLen);
        },
        value);
    if (code) *code = result;
    return Utf8FromGbk(value.substr(0, value.find('\0')));
}

std::string LocalText(const std::string& generalizedTime) {
    const auto time = ReadAsn1Time(generalizedTime);
    return time ? LocalTimeText(*time) : "";
}

const char* FormText(SealForm form) {
    return form == SealForm::kGb2020 ? "GB/T 38540" : "GM/T 0031";
}

const char* ExtensionOf(PictureFormat format) {
    switch (format) {
        case PictureFormat::kGif: return ".gif";
        case PictureFormat::kPng: return ".png";
        case PictureFormat::kJpeg: return ".jpg";
        case PictureFormat::kBmp: return ".bmp";
        case PictureFormat::kUnknown: break;
    }
    return ".bin";
}

// The seal with its picture, by the seal library; what that doesn't tell is read from the DER.
VerdictStep ReadSealOf(const SealSignature& read, SignatureVerdict& verdict) {
    SealInfoOfSignature seal;
    seal.name = read.seal.name;
    seal.number = read.seal.esId;
    seal.form = FormText(read.seal.form);
    seal.property = read.property;
    seal.maker = CertificateField(read.seal.makerCertificate, kSubject);
    seal.madeBySigner = read.seal.makerCertificate == read.signerCertificate;
    const int code = FetchInTwoSteps(
        [&](unsigned char* out, int* outLen) {
            return TVK_Get_Pic_From_Eseal_Ex(Bytes(read.sealDer), LengthOf(read.sealDer), out,
                                             outLen, &seal.widthMm, &seal.heightMm);
        },
        seal.picture);
    const PictureHeader header = ReadPictureHeader(seal.picture);
    seal.extension = ExtensionOf(header.format);
    if (read.time) verdict.signingTime = LocalTimeText(*read.time);
    verdict.seal = std::move(seal);
    if (code) return {"picture", false, "picture", code, ResultText(code)};
    if (header.format == PictureFormat::kUnknown || !header.complete) {
        return {"picture", false, "picture", 0, "the seal's picture can't be shown"};
    }
    return StepFor("picture", 0);
}

// A certificate that has expired since is no harm if it was valid when it signed.
void ForgiveExpiry(SignatureVerdict& verdict, bool proven) {
    for (VerdictStep& step : verdict.steps) {
        if (step.code != TESMARK_CERT_EXPIRED) continue;
        step = {step.name, true, "", step.code,
                proven
                    ? "it was valid when it signed and has expired since"
                    : "it was valid when the signer claims to have signed and has expired since"};
    }
}

bool IsGood(const SignatureVerdict& verdict, std::string_view name) {
    const auto found = std::find_if(verdict.steps.begin(), verdict.steps.end(),
                                    [name](const VerdictStep& step) { return step.name == name; });
    return found != verdict.steps.end() && found->good;
}

// Whether the list was there when the certificate was judged with this code.
bool WasRevocationChecked(int code) {
    return ReadNumberSetting("bVerifyCRL") != 0 && code != TESMARK_CRL_FAILED &&
           code != TESMARK_CRL_NOT_ACCEPTED;
}

// `judgeStamp` runs between the two judgements of the certificate: the first hands its
// revocation list to the service, which then judges the time stamp by it as well. Returns whether
// the time stamp is good, and so proves its time.
template <typename Stamp>
bool JudgeSigner(SignatureVerdict& verdict, const Stamp& judgeStamp) {
    const std::string& certificate = verdict.signer.certificate;
    if (certificate.empty()) {
        verdict.steps.push_back(StepFor("certificate", kServiceSignerMissing));
        return false;
    }
    VerdictStep step = JudgeCertificate(certificate, LocalTimeText(std::time(nullptr)));
    verdict.revocationChecked = WasRevocationChecked(step.code);
    const std::optional<VerdictStep> stamp = judgeStamp();
    const bool proven = stamp && stamp->good && !verdict.timeStamp->time.empty();
    if (proven && !step.good) step = JudgeCertificate(certificate, verdict.timeStamp->time);
    verdict.steps.push_back(step);
    const std::string& time = proven ? verdict.timeStamp->time : verdict.signingTime;
    if (!time.empty()) verdict.steps.push_back(JudgeTime(certificate, time));
    if (stamp) verdict.steps.push_back(*stamp);
    return proven;
}

void JudgeSeal(std::string_view signature, SignatureVerdict& verdict) {
    SealSignature read;
    if (const int code = ReadSealSignature(signature, read)) {
        verdict.steps.push_back(StepFor("seal", code));
        return;
    }
    verdict.steps.push_back(ReadSealOf(read, verdict));
    const bool proven = JudgeSigner(verdict, [&] { return JudgeTimeStampOf(read, verdict); });
    // The seal library, which looks at a seal signature's own time, has judged that already.
    if (IsGood(verdict, "signature") && IsGood(verdict, "signing time"))
        ForgiveExpiry(verdict, proven);
}

void JudgePkcs7(std::string_view signature, SignatureVerdict& verdict) {
    const bool proven = JudgeSigner(verdict, [&] { return JudgeTimeStamp(signature, verdict); });
    if (proven && IsGood(verdict, "signing time")) ForgiveExpiry(verdict, proven);
}

}  // namespace

const char* SignatureKindText(SignatureKind kind) {
    switch (kind) {
        case SignatureKind::kPkcs7: return "PKCS#7";
        case SignatureKind::kSeal: return "seal signature";
        case SignatureKind::kOther: break;
    }
    return "unknown form";
}

SignatureKind KindOf(std::string_view signature) {
    const std::size_t first = FirstInside(signature);
    if (first == std::string_view::npos) return SignatureKind::kOther;
    if (signature[first] == 0x06) return SignatureKind::kPkcs7;
    return signature[first] == 0x30 ? SignatureKind::kSeal : SignatureKind::kOther;
}

void PrepareSigner(std::string_view signature) {
    int size = 0;
    ParseP7FieldData(Bytes(signature), LengthOf(signature), kSignerCertificate, nullptr, &size);
}

bool SignedBySm2(std::string_view signature) { return ReadSigner(signature).keyType == "SM2"; }

bool SignatureVerdict::Good() const {
    return !steps.empty() &&
           std::all_of(steps.begin(), steps.end(), [](const VerdictStep& row) { return row.good; });
}

std::optional<VerdictStep> JudgeTimeStamp(std::string_view signature, SignatureVerdict& verdict) {
    int code = 0;
    const std::string time = StampField(signature, kStampTime, &code);
    if (code == kServiceTimeStampMissing || code == kServiceNotSupported ||
        code == kServiceMessageDamaged) {
        return {};
    }
    if (code) return StepFor("time stamp", code);
    verdict.timeStamp =
        TimeStampInfo{LocalText(time), StampField(signature, kStampAuthority),
                      StampField(signature, kStampSerial), StampField(signature, kStampPolicy),
                      StampField(signature, kStampHash)};
    return StepFor("time stamp", VerifyPDFTimeStamp(Bytes(signature), LengthOf(signature)));
}

SignatureVerdict JudgeSignature(std::string_view signature, const SignedData& data,
                                const std::string& claimedTime) {
    SignatureVerdict verdict;
    verdict.kind = KindOf(signature);
    verdict.signingTime = claimedTime;
    if (verdict.kind == SignatureKind::kOther) {
        verdict.steps.push_back(StepFor("signature", kServiceMessageDamaged));
        return verdict;
    }
    verdict.signer = ReadSigner(signature);
    verdict.steps.push_back(JudgeValue(verdict, signature, data));
    if (verdict.kind == SignatureKind::kSeal) {
        JudgeSeal(signature, verdict);
    } else {
        JudgePkcs7(signature, verdict);
    }
    return verdict;
}
