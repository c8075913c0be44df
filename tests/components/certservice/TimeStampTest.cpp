#include "components/certservice/BerElements.h"
#include "components/certservice/Certificate.h"
#include "components/certservice/StampMessage.h"
#include "components/certservice/StampTest.h"

namespace {

constexpr KeyKind kKinds[] = {KeyKind::kSm2, KeyKind::kRsa};

class TimeStampTest : public StampTest {};

TEST_F(TimeStampTest, ARequestAsksForATokenWithItsCertificateAndANonce) {
    const std::string hash = Digest(HashAlgorithm::kSha256, "value");
    const Answer request = Request(hash);
    ASSERT_EQ(request.code, 0);
    EXPECT_LE(request.data.size(), 512u) << "the library's buffer";
    WriteFile(Path("request"), request.data);
    const ProgramRun run = OpenSsl("ts -query -in request -text");
    ASSERT_EQ(run.status, 0) << run.output;
    EXPECT_NE(run.output.find("Hash Algorithm: sha256"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("Certificate required: yes"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("Nonce: 0x"), std::string::npos) << run.output;
    EXPECT_NE(request.data.find(hash), std::string::npos);
    EXPECT_NE(Request(hash).data, request.data) << "another nonce";
    WriteFile(Path("request"), Request(hash, 4, 0).data);
    EXPECT_NE(OpenSsl("ts -query -in request -text").output.find("Certificate required: no"),
              std::string::npos);
}

TEST_F(TimeStampTest, ARequestTakesTheHashesThatTheServiceNumbersAndOfTheirSize) {
    EXPECT_EQ(Request(std::string(32, 'x'), 1).code, 0);
    EXPECT_EQ(Request(std::string(20, 'x'), 2).code, 0);
    EXPECT_EQ(Request(std::string(20, 'x'), 4).code, kServiceBadArgument);
    EXPECT_EQ(Request("", 4).code, kServiceBadArgument);
    EXPECT_EQ(Request(std::string(32, 'x'), 3).code, kServiceAlgorithmUnknown);
}

TEST_F(TimeStampTest, ATokenOfEitherKindOfAuthorityStampsAMessageOfEitherKind) {
    for (const KeyKind signer : kKinds) {
        const std::string message = Message(signer);
        for (const KeyKind kind : kKinds) {
            for (const bool national : {false, true}) {
                TokenPlan plan{.imprint = Imprint(message)};
                plan.national = national;
                plan.plainSm3 = !national;
                const StampAuthority stamper = Stamper(kind);
                const Answer stamped =
                    Stamp(StampAuthority::Response(stamper.Token(plan)), message);
                ASSERT_EQ(stamped.code, 0);
                EXPECT_EQ(VerifyStamp(stamped.data), 0);
                EXPECT_EQ(VerifyMessage(stamped.data), 0);
                EXPECT_EQ(SignatureValue(stamped.data), SignatureValue(message));
            }
        }
    }
}

TEST_F(TimeStampTest, AMessageWithoutATimeStampSaysSo) {
    const std::string message = Message();
    EXPECT_EQ(VerifyStamp(message), kServiceTimeStampMissing);
    EXPECT_EQ(StampField(message, 1).code, kServiceTimeStampMissing);
    EXPECT_EQ(VerifyStamp("no message"), kServiceMessageDamaged);
    EXPECT_EQ(StampField("no message", 1).code, kServiceMessageDamaged);
}

TEST_F(TimeStampTest, TheSizeHasRoomForTheNextExchangesToken) {
    const std::string message = Message();
    const std::string response =
        StampAuthority::Response(Stamper(KeyKind::kRsa).Token({.imprint = Imprint(message)}));
    int size = 0;
    ASSERT_EQ(SOF_TSGenPDFSignature(m_context, Bytes(response), Size(response), Bytes(message),
                                    Size(message), nullptr, &size),
              0);
    const Answer stamped = Stamp(response, message);
    EXPECT_EQ(size, Size(stamped.data) + 64);
    std::string buffer(static_cast<size_t>(size), '\x7F');
    int length = Size(stamped.data) - 1;
    auto* out = reinterpret_cast<unsigned char*>(buffer.data());
    EXPECT_EQ(SOF_TSGenPDFSignature(m_context, Bytes(response), Size(response), Bytes(message),
                                    Size(message), out, &length),
              kServiceBufferTooSmall);
    EXPECT_EQ(length, Size(stamped.data));
    EXPECT_EQ(buffer.find_first_not_of('\x7F'), std::string::npos);
    EXPECT_EQ(SOF_TSGenPDFSignature(m_context, Bytes(response), Size(response), Bytes(message),
                                    Size(message), out, &length),
              0);
    EXPECT_EQ(buffer.substr(0, static_cast<size_t>(length)), stamped.data);
}

TEST_F(TimeStampTest, OfDataTooShortForAMessageTheTokenItselfComesOut) {
    for (const std::string text : {"1", "1234567890"}) {
        const std::string token =
            Stamper(KeyKind::kRsa).Token({.imprint = Digest(HashAlgorithm::kSha256, text)});
        EXPECT_EQ(Stamp(StampAuthority::Response(token), text), (Answer{0, token}));
        EXPECT_EQ(Stamp(StampAuthority::Response(token), "2").code, kServiceTimeStampMismatch);
        EXPECT_EQ(Stamp(StampAuthority::Response(token), "12345678901").code,
                  kServiceMessageDamaged);
    }
}

TEST_F(TimeStampTest, AResponseThatGrantsNothingIsRefusedAndRubbishIsDamaged) {
    const std::string message = Message();
    const std::string token = Stamper(KeyKind::kRsa).Token({.imprint = Imprint(message)});
    EXPECT_EQ(Stamp(StampAuthority::Response(token, 1), message).code, 0) << "with changes";
    for (const int status : {2, 3, 4, 5, 6, 0x7F}) {
        EXPECT_EQ(Stamp(StampAuthority::Response("", status), message).code,
                  kServiceTimeStampRefused);
        EXPECT_EQ(Stamp(StampAuthority::Response(token, status), message).code,
                  kServiceTimeStampRefused);
    }
    EXPECT_EQ(Stamp(StampAuthority::Response(""), message).code, kServiceTimeStampDamaged);
    EXPECT_EQ(Stamp("<html>404</html>", message).code, kServiceTimeStampDamaged);
    EXPECT_EQ(Stamp(token, message).code, kServiceTimeStampDamaged) << "a bare token";
    EXPECT_EQ(Stamp(StampAuthority::Response(message), message).code, kServiceTimeStampDamaged)
        << "a message of another kind";
    EXPECT_EQ(Stamp("", message).code, kServiceBadArgument);
    EXPECT_EQ(Stamp(StampAuthority::Response(token), "").code, kServiceBadArgument);
}

TEST_F(TimeStampTest, AStampOverAnotherSignatureIsAMismatch) {
    const std::string message = Message();
    const StampAuthority stamper = Stamper(KeyKind::kRsa);
    const std::string token = stamper.Token({.imprint = std::string(32, 'x')});
    EXPECT_EQ(Stamp(StampAuthority::Response(token), message).code, kServiceTimeStampMismatch);
    EXPECT_EQ(VerifyStamp(StampMessage(message, token)), kServiceTimeStampMismatch);
}

TEST_F(TimeStampTest, AnImprintByAnotherHashVerifiesButIsntWhatWasAskedFor) {
    const std::string message = Message();
    for (const HashAlgorithm hash :
         {HashAlgorithm::kSm3, HashAlgorithm::kSha384, HashAlgorithm::kSha512}) {
        const std::string token =
            Stamper(KeyKind::kSm2)
                .Token({.imprint = Digest(hash, SignatureValue(message)), .imprintHash = hash});
        EXPECT_EQ(VerifyStamp(StampMessage(message, token)), 0);
        EXPECT_EQ(Stamp(StampAuthority::Response(token), message).code, kServiceTimeStampMismatch);
    }
}

TEST_F(TimeStampTest, AnImprintBySha1IsRefusedForItsAlgorithm) {
    const std::string message = Message();
    const HashAlgorithm hash = HashAlgorithm::kSha1;
    const std::string token =
        Stamper(KeyKind::kSm2)
            .Token({.imprint = Digest(hash, SignatureValue(message)), .imprintHash = hash});
    EXPECT_EQ(VerifyStamp(StampMessage(message, token)), kServiceTimeStampAlgorithmUnknown);
}

TEST_F(TimeStampTest, EveryStepOfATokensOwnSignatureHasItsCode) {
    const std::string message = Message();
    for (const KeyKind kind : kKinds) {
        const StampAuthority stamper = Stamper(kind);
        const auto judge = [&](auto change, int code) {
            TokenPlan plan{.imprint = Imprint(message)};
            change(plan);
            const std::string token = stamper.Token(plan);
            EXPECT_EQ(Stamp(StampAuthority::Response(token), message).code, code);
            EXPECT_EQ(VerifyStamp(StampMessage(message, token)), code);
        };
        judge([](TokenPlan&) {}, 0);
        judge([](TokenPlan& plan) { plan.fraction = ".125"; }, 0);
        judge([](TokenPlan& plan) { plan.authorityName = "Time Stamps"; },
              kServiceTimeStampCertificateUnbound);
        judge([](TokenPlan& plan) { plan.ess = Ess::kVersion1; }, 0);
        judge([](TokenPlan& plan) { plan.ess = Ess::kBoth; }, 0);
        judge([](TokenPlan& plan) { plan.ess = Ess::kNone; }, kServiceTimeStampCertificateUnbound);
        judge([](TokenPlan& plan) { plan.ess = Ess::kOtherCertificate; },
              kServiceTimeStampCertificateUnbound);
        judge([](TokenPlan& plan) { plan.ess = Ess::kOtherIssuer; },
              kServiceTimeStampCertificateUnbound);
        judge([](TokenPlan& plan) { plan.withCertificate = false; },
              kServiceTimeStampCertificateMissing);
        judge([](TokenPlan& plan) { plan.digest = std::string(32, 'x'); },
              kServiceTimeStampDigestMismatch);
        judge([](TokenPlan& plan) { plan.withAttributes = false; }, kServiceTimeStampDamaged);
        judge([](TokenPlan& plan) { plan.contentType = "1.2.840.113549.1.7.1"; },
              kServiceTimeStampDamaged);
        judge([](TokenPlan& plan) { plan.fraction = "+0800"; }, kServiceTimeStampDamaged);
    }
}

TEST_F(TimeStampTest, ATokensNameForItsAuthorityHasToBeTheCertificates) {
    const std::string message = Message();
    CertificateRequest request;
    request.country = "";
    request.commonName = "Authority";
    const StampAuthority stamper = Stamper(KeyKind::kRsa, request);
    for (const auto& [name, code] :
         {std::pair("Authority", 0), std::pair("Other", +kServiceTimeStampCertificateUnbound)}) {
        TokenPlan plan{.imprint = Imprint(message)};
        plan.authorityName = name;
        EXPECT_EQ(VerifyStamp(StampMessage(message, stamper.Token(plan))), code) << name;
    }
}

TEST_F(TimeStampTest, ACriticalExtensionThatNobodyKnowsSpoilsAToken) {
    const std::string message = Message();
    const std::string oid("\x06\x03\x2A\x03\x04", 5);
    const std::string value("\x04\x02\x05\x00", 4);
    const std::string critical("\x01\x01\xFF", 3);
    const auto verdict = [&](const std::string& extension) {
        TokenPlan plan{.imprint = Imprint(message)};
        plan.extensions = DerElement(kBerContext1, DerElement(kBerSequence, extension));
        return VerifyStamp(StampMessage(message, Stamper(KeyKind::kRsa).Token(plan)));
    };
    EXPECT_EQ(verdict(oid + value), 0);
    EXPECT_EQ(verdict(oid + critical + value), kServiceTimeStampDamaged);
}

TEST_F(TimeStampTest, AChangedSignatureOfATokenIsInvalid) {
    const std::string message = Message();
    for (const KeyKind kind : kKinds) {
        std::string token = Stamper(kind).Token({.imprint = Imprint(message)});
        token.back() ^= 1;
        EXPECT_EQ(Stamp(StampAuthority::Response(token), message).code,
                  kServiceTimeStampSignatureInvalid);
        EXPECT_EQ(VerifyStamp(StampMessage(message, token)), kServiceTimeStampSignatureInvalid);
    }
}

TEST_F(TimeStampTest, OnlyACertificateForTimeStampsAloneMakesThem) {
    const std::string message = Message();
    for (const char* usage : {"timeStamping", "critical,timeStamping,emailProtection",
                              "critical,emailProtection", "emailProtection"}) {
        CertificateRequest request;
        request.extendedKeyUsage = usage;
        const std::string token =
            Stamper(KeyKind::kSm2, request).Token({.imprint = Imprint(message)});
        EXPECT_EQ(Stamp(StampAuthority::Response(token), message).code, kServiceTimeStampPurpose);
        EXPECT_EQ(VerifyStamp(StampMessage(message, token)), kServiceTimeStampPurpose) << usage;
    }
}

TEST_F(TimeStampTest, ATokensFieldsAreTold) {
    const std::string message = Message();
    CertificateRequest request;
    request.commonName = "时间戳";
    const StampAuthority stamper = Stamper(KeyKind::kSm2, request);
    TokenPlan plan{.imprint = Imprint(message)};
    plan.time = 1'800'000'000;
    plan.fraction = ".25";
    const std::string token = stamper.Token(plan);
    const std::string stamped = StampMessage(message, token);
    const std::string expected[] = {"20270115080000.25Z",
                                    "4D",
                                    "1.2.3.4.5",
                                    "C=CN, CN=时间戳",
                                    stamper.Certificate(),
                                    "SHA256",
                                    plan.imprint,
                                    token,
                                    "2.005007",
                                    "1234567812345678",
                                    "0"};
    for (int field = 1; field <= 11; ++field) {
        EXPECT_EQ(StampField(stamped, field), (Answer{0, expected[field - 1]})) << field;
    }
    EXPECT_EQ(StampField(stamped, 0).code, kServiceNoSuchField);
    EXPECT_EQ(StampField(stamped, 12).code, kServiceNoSuchField);
    plan.withCertificate = false;
    const std::string bare = StampMessage(message, stamper.Token(plan));
    EXPECT_EQ(StampField(bare, 4).code, kServiceTimeStampCertificateMissing);
    EXPECT_EQ(StampField(bare, 5).code, kServiceTimeStampCertificateMissing);
    EXPECT_EQ(StampField(bare, 1).data, "20270115080000.25Z");
}

TEST_F(TimeStampTest, AnAccuracyWithOtherThanThousandthsIsLeftOut) {
    constexpr unsigned char kMillis = 0x80;
    constexpr unsigned char kMicros = 0x81;
    const std::string message = Message();
    const StampAuthority stamper = Stamper(KeyKind::kRsa);
    const auto told = [&](const std::string& accuracy) {
        const std::string token =
            stamper.Token({.imprint = Imprint(message), .accuracy = accuracy});
        return StampField(StampMessage(message, token), 9);
    };
    EXPECT_EQ(told(DerElement(kMillis, "\x03\xE7")), (Answer{0, "0.999000"}));
    EXPECT_EQ(told(DerElement(kMicros, "\x03\xE7")), (Answer{0, "0.000999"}));
    EXPECT_EQ(told(DerElement(kBerInteger, "\x3C")), (Answer{0, "60.000000"}));
    const std::string largest = "\x7F" + std::string(7, '\xFF');
    EXPECT_EQ(told(DerElement(kBerInteger, largest)).data, "9223372036854775807.000000");
    for (const std::string& number : {std::string("\x03\xE8"), std::string("\xFF"), largest,
                                      "\x40" + std::string(7, '\0'), "\x01" + largest}) {
        EXPECT_EQ(told(DerElement(kMillis, number)), (Answer{0, ""}));
        EXPECT_EQ(told(DerElement(kMicros, number)), (Answer{0, ""}));
    }
    EXPECT_EQ(told(DerElement(kBerInteger, "\xFF")), (Answer{0, ""}));
    EXPECT_EQ(told(DerElement(kBerInteger, "\x01" + largest)), (Answer{0, ""}));
}

}  // namespace
