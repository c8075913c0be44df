#include <openssl/pem.h>

#include <filesystem>

#include "components/certservice/Certificate.h"
#include "components/certservice/ServiceTest.h"
#include "components/crypto/Signature.h"

namespace {

class SignTest : public ServiceTest {
protected:
    // A key of that kind whose owner has logged in.
    std::string LoggedIn(void* context, KeyKind kind) {
        const std::string certId = MakeKey(kind, kind == KeyKind::kSm2 ? "sm2" : "rsa");
        EXPECT_EQ(SOF_Login(context, certId.c_str(), kPin), 0);
        return certId;
    }

    int VerifyData(void* context, std::string_view certificate, std::string_view data,
                   std::string_view signature) {
        return SOF_VerifySignedData(context, Bytes(certificate), Size(certificate), Bytes(data),
                                    Size(data), Bytes(signature), Size(signature));
    }
    int VerifyMessage(void* context, std::string_view message, std::string_view data) {
        return SOF_VerifySignedMessage(context, Bytes(message), Size(message), Bytes(data),
                                       Size(data));
    }
    int VerifyHash(void* context, std::string_view message, std::string_view hash) {
        return SOF_VerifySignedHashMessage(context, Bytes(message), Size(message), Bytes(hash),
                                           Size(hash));
    }
    Answer Info(void* context, std::string_view message, int field) {
        return TwoSteps([&](unsigned char* out, int* outLen) {
            return SOF_GetInfoFromSignedMessage(context, Bytes(message), Size(message), field, out,
                                                outLen);
        });
    }
    std::string KeyHash(const Answer& certificate, HashAlgorithm hash, std::string_view data) {
        const CertificateHandle parsed = ParseCertificate(certificate.data);
        return DigestForKey(X509_get0_pubkey(parsed.get()), hash, data);
    }
    // The files that openssl needs: the certificate and its public key in PEM, data, signature.
    void Lay(const std::string& certificate, std::string_view data, std::string_view signature) {
        const CertificateHandle parsed = ParseCertificate(certificate);
        WriteFile(Path("signer.pem"), PemOf(parsed.get()));
        WriteFile(Path("data"), data);
        WriteFile(Path("signature"), signature);
        OpenSsl("x509 -pubkey -noout -in signer.pem -out public.pem");
    }
};

TEST_F(SignTest, OpenSslAcceptsAPlainSignatureOfAnRsaKey) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kRsa);
    ASSERT_EQ(SOF_SetSignMethod(context, 0x00010004), 0);
    const Answer signature = SignData(context, certId, "data");
    ASSERT_EQ(signature.code, 0);
    Lay(Export(context, certId).data, "data", signature.data);
    const ProgramRun run = OpenSsl("dgst -sha256 -verify public.pem -signature signature data");
    EXPECT_EQ(run.status, 0) << run.output;
}

TEST_F(SignTest, OpenSslAcceptsAPlainSignatureOfAnSm2KeyWithTheStandardsId) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kSm2);
    ASSERT_EQ(SOF_SetSignMethod(context, 0x00020101), 0);
    const Answer signature = SignData(context, certId, "data");
    ASSERT_EQ(signature.code, 0);
    Lay(Export(context, certId).data, "data", signature.data);
    const ProgramRun run = OpenSsl(
        "pkeyutl -verify -pubin -inkey public.pem -in data -rawin -digest sm3 -pkeyopt "
        "distid:1234567812345678 -sigfile signature");
    EXPECT_EQ(run.status, 0) << run.output;
}

TEST_F(SignTest, OpenSslAcceptsTheDetachedMessageOfAnRsaKey) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kRsa);
    const std::string data("zero\0and\r\nline ends", 19);
    const Answer message = SignMessage(context, certId, data);
    ASSERT_EQ(message.code, 0);
    Lay(Export(context, certId).data, data, message.data);
    const std::string command =
        "cms -verify -binary -inform DER -in signature -content data -out out -CAfile "
        "trust/velmora-development-rsa.pem -purpose any";
    const ProgramRun run = OpenSsl(command);
    EXPECT_EQ(run.status, 0) << run.output;
    WriteFile(Path("data"), "other data");
    EXPECT_NE(OpenSsl(command).status, 0);
}

TEST_F(SignTest, AMessageFromAHashIsWhatOneFromTheDataWouldBe) {
    void* context = Open();
    for (const auto& [kind, number] : {std::pair(KeyKind::kSm2, 1), std::pair(KeyKind::kRsa, 4)}) {
        const std::string certId = LoggedIn(context, kind);
        const std::string hash =
            KeyHash(Export(context, certId), static_cast<HashAlgorithm>(number), "data");
        const Answer fromHash = SignHash(context, certId, number, hash);
        const Answer fromData = SignMessage(context, certId, "data");
        ASSERT_EQ(fromHash.code, 0);
        ASSERT_EQ(fromData.code, 0);
        EXPECT_EQ(VerifyMessage(context, fromHash.data, "data"), 0);
        EXPECT_EQ(VerifyHash(context, fromHash.data, hash), 0);
        EXPECT_EQ(VerifyHash(context, fromData.data, hash), 0);
        EXPECT_NE(VerifyMessage(context, fromHash.data, "Data"), 0);
    }
}

TEST_F(SignTest, OpenSslAcceptsAnRsaMessageFromAHash) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kRsa);
    const Answer message =
        SignHash(context, certId, 4, Digest(HashAlgorithm::kSha256, "data of a file"));
    ASSERT_EQ(message.code, 0);
    Lay(Export(context, certId).data, "data of a file", message.data);
    const ProgramRun run = OpenSsl(
        "cms -verify -binary -inform DER -in signature -content data -out /dev/null -CAfile "
        "trust/velmora-development-rsa.pem -purpose any");
    EXPECT_EQ(run.status, 0) << run.output;
}

TEST_F(SignTest, AnSm2MessageBearsTheNationalIdentifiersAndNoSignedAttributes) {
    void* context = Open();
    const Answer message = SignMessage(context, LoggedIn(context, KeyKind::kSm2), "data");
    WriteFile(Path("message"), message.data);
    const ProgramRun run = OpenSsl("asn1parse -inform DER -in message");
    ASSERT_EQ(run.status, 0) << run.output;
    EXPECT_NE(run.output.find("1.2.156.10197.6.1.4.2.2"), std::string::npos);
    EXPECT_NE(run.output.find("1.2.156.10197.6.1.4.2.1"), std::string::npos);
    EXPECT_NE(run.output.find("1.2.156.10197.1.301.1"), std::string::npos);
    EXPECT_EQ(run.output.find("messageDigest"), std::string::npos);
}

TEST_F(SignTest, TheSizeQueryAndItsFetchNeverDisagree) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kSm2);
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(SignData(context, certId, "data").code, 0);
        EXPECT_EQ(SignMessage(context, certId, "data").code, 0);
    }
}

TEST_F(SignTest, AFetchForOtherDataThanTheQueryIsASignatureOfThoseData) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kRsa);
    const std::string certificate = Export(context, certId).data;
    int length = 0;
    ASSERT_EQ(SOF_SignData(context, certId.c_str(), Bytes("one"), 3, nullptr, &length), 0);
    std::string signature(static_cast<size_t>(length), '\0');
    ASSERT_EQ(SOF_SignData(context, certId.c_str(), Bytes("two"), 3,
                           reinterpret_cast<unsigned char*>(signature.data()), &length),
              0);
    EXPECT_EQ(VerifyData(context, certificate, "two", signature), 0);
    EXPECT_EQ(VerifyData(context, certificate, "one", signature), kServiceSignatureInvalid);
}

TEST_F(SignTest, ABufferTooSmallLearnsTheSizeAndTheSameSignatureIsFetchedLater) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kSm2);
    unsigned char buffer[128] = {};
    int length = 10;
    ASSERT_EQ(SOF_SignData(context, certId.c_str(), Bytes("data"), 4, buffer, &length),
              kServiceBufferTooSmall);
    EXPECT_EQ(buffer[0], 0);
    const int needed = length;
    EXPECT_GE(needed, 68);
    ASSERT_EQ(SOF_SignData(context, certId.c_str(), Bytes("data"), 4, buffer, &length), 0);
    EXPECT_EQ(length, needed);
}

TEST_F(SignTest, AKeyPulledBetweenSizeAndFetchHasSignedAlready) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kSm2);
    const std::string certificate = Export(context, certId).data;
    int length = 0;
    ASSERT_EQ(SOF_SignData(context, certId.c_str(), Bytes("data"), 4, nullptr, &length), 0);
    std::filesystem::remove_all(KeyPath(certId));
    std::string signature(static_cast<size_t>(length), '\0');
    auto* out = reinterpret_cast<unsigned char*>(signature.data());
    ASSERT_EQ(SOF_SignData(context, certId.c_str(), Bytes("data"), 4, out, &length), 0);
    EXPECT_EQ(VerifyData(context, certificate, "data", signature), 0);
    EXPECT_EQ(SOF_SignData(context, certId.c_str(), Bytes("data"), 4, out, &length),
              kServiceKeyRemoved);
}

TEST_F(SignTest, AMethodSetBetweenSizeAndFetchCounts) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kRsa);
    int length = 0;
    ASSERT_EQ(SOF_SignData(context, certId.c_str(), Bytes("data"), 4, nullptr, &length), 0);
    ASSERT_EQ(SOF_SetSignMethod(context, 0x00020101), 0);
    unsigned char signature[256];
    EXPECT_EQ(SOF_SignData(context, certId.c_str(), Bytes("data"), 4, signature, &length),
              kServiceAlgorithmUnknown);
}

TEST_F(SignTest, AFetchWithoutAQueryComputes) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kSm2);
    std::string signature(200, '\0');
    int length = 200;
    ASSERT_EQ(SOF_SignData(context, certId.c_str(), Bytes("data"), 4,
                           reinterpret_cast<unsigned char*>(signature.data()), &length),
              0);
    signature.resize(static_cast<size_t>(length));
    EXPECT_EQ(VerifyData(context, Export(context, certId).data, "data", signature), 0);
}

TEST_F(SignTest, NothingLoggedInAfterLogoutSigns) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kSm2);
    ASSERT_EQ(SOF_Logout(context, certId.c_str()), 0);
    std::string signature;
    EXPECT_EQ(m_keys.SignDigest(certId, HashAlgorithm::kSm3, std::string(32, 'x'), signature),
              kServicePinUnavailable);
}

TEST_F(SignTest, TheMethodHasToFitTheKey) {
    void* context = Open();
    const std::string sm2 = LoggedIn(context, KeyKind::kSm2);
    const std::string rsa = LoggedIn(context, KeyKind::kRsa);
    ASSERT_EQ(SOF_SetSignMethod(context, 0x00010004), 0);
    EXPECT_EQ(SignData(context, sm2, "data").code, kServiceAlgorithmUnknown);
    EXPECT_EQ(SignMessage(context, sm2, "data").code, kServiceAlgorithmUnknown);
    ASSERT_EQ(SOF_SetSignMethod(context, 0x00020101), 0);
    EXPECT_EQ(SignData(context, rsa, "data").code, kServiceAlgorithmUnknown);
    EXPECT_EQ(SignHash(context, rsa, 4, std::string(32, 'x')).code, kServiceAlgorithmUnknown);
    EXPECT_EQ(SOF_SetSignMethod(context, 77), kServiceAlgorithmUnknown);
    ASSERT_EQ(SOF_SetSignMethod(context, 0), 0);
    EXPECT_EQ(SignData(context, sm2, "data").code, 0);
    EXPECT_EQ(SignData(context, rsa, "data").code, 0);
}

TEST_F(SignTest, AMethodIsItsContextsOwn) {
    void* one = Open();
    void* other = Open();
    const std::string sm2 = LoggedIn(one, KeyKind::kSm2);
    ASSERT_EQ(SOF_SetSignMethod(one, 0x00010004), 0);
    EXPECT_EQ(SignData(other, sm2, "data").code, 0);
}

TEST_F(SignTest, AnOlderMethodSignsSha1WithRsa) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kRsa);
    ASSERT_EQ(SOF_SetSignMethod(context, 0x00010002), 0);
    const Answer signature = SignData(context, certId, "data");
    Lay(Export(context, certId).data, "data", signature.data);
    EXPECT_EQ(OpenSsl("dgst -sha1 -verify public.pem -signature signature data").status, 0);
    EXPECT_EQ(VerifyData(context, Export(context, certId).data, "data", signature.data), 0);
}

TEST_F(SignTest, AHashOfAnotherSizeOrKindIsRefused) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kSm2);
    EXPECT_EQ(SignHash(context, certId, 1, std::string(20, 'x')).code, kServiceBadArgument);
    EXPECT_EQ(SignHash(context, certId, 1, "").code, kServiceBadArgument);
    EXPECT_EQ(SignHash(context, certId, 4, std::string(32, 'x')).code, kServiceAlgorithmUnknown);
    EXPECT_EQ(SignHash(context, certId, 3, std::string(32, 'x')).code, kServiceAlgorithmUnknown);
}

TEST_F(SignTest, PlainSignaturesAreToldGoodFromBad) {
    void* context = Open();
    for (const KeyKind kind : {KeyKind::kSm2, KeyKind::kRsa}) {
        const std::string certId = LoggedIn(context, kind);
        const std::string certificate = Export(context, certId).data;
        std::string signature = SignData(context, certId, "data").data;
        EXPECT_EQ(VerifyData(context, certificate, "data", signature), 0);
        EXPECT_EQ(VerifyData(context, certificate, "date", signature), kServiceSignatureInvalid);
        EXPECT_EQ(VerifyData(context, "nonsense", "data", signature), kServiceCertificateDamaged);
        signature[20] ^= 1;
        EXPECT_EQ(VerifyData(context, certificate, "data", signature), kServiceSignatureInvalid);
    }
}

TEST_F(SignTest, EveryPartOfAMessageThatTheSignatureDependsOnCounts) {
    void* context = Open();
    for (const KeyKind kind : {KeyKind::kSm2, KeyKind::kRsa}) {
        const std::string message = SignMessage(context, LoggedIn(context, kind), "data").data;
        const std::string value = Info(context, message, 3).data;
        const size_t at = message.find(value);
        ASSERT_NE(at, std::string::npos);
        for (size_t i = 0; i < value.size(); ++i) {
            std::string changed = message;
            changed[at + i] = static_cast<char>(changed[at + i] ^ 1);
            EXPECT_NE(VerifyMessage(context, changed, "data"), 0) << i;
        }
    }
}

TEST_F(SignTest, AMessageTellsItsSignerAndItsSignatureValue) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kSm2);
    const std::string message = SignMessage(context, certId, "data").data;
    EXPECT_EQ(Info(context, message, 1), (Answer{0, ""})) << "detached";
    EXPECT_EQ(Info(context, message, 2), Export(context, certId));
    EXPECT_EQ(
        VerifyData(context, Export(context, certId).data, "data", Info(context, message, 3).data),
        0)
        << "without signed attributes the value is a plain signature";
    EXPECT_EQ(Info(context, message, 4).code, kServiceNoSuchField);
    EXPECT_EQ(Info(context, "no message", 2).code, kServiceMessageDamaged);
}

TEST_F(SignTest, BytesBehindTheMessageAreLeftOutOfAccount) {
    void* context = Open();
    std::string message = SignMessage(context, LoggedIn(context, KeyKind::kSm2), "data").data;
    message.append(1000, '\0');
    EXPECT_EQ(VerifyMessage(context, message, "data"), 0);
    message.append("junk");
    EXPECT_EQ(VerifyMessage(context, message, "data"), 0);
}

TEST_F(SignTest, AMessageCutShortIsDamaged) {
    void* context = Open();
    const std::string message = SignMessage(context, LoggedIn(context, KeyKind::kSm2), "data").data;
    for (size_t size = 1; size < message.size(); size += 7) {
        EXPECT_EQ(VerifyMessage(context, message.substr(0, size), "data"), kServiceMessageDamaged);
    }
}

TEST_F(SignTest, TheHashOfAnotherAlgorithmIsAMismatch) {
    void* context = Open();
    const std::string certId = LoggedIn(context, KeyKind::kRsa);
    const std::string message = SignMessage(context, certId, "data").data;
    EXPECT_EQ(VerifyHash(context, message, Digest(HashAlgorithm::kSha1, "data")),
              kServiceDigestMismatch);
    EXPECT_EQ(VerifyHash(context, message, Digest(HashAlgorithm::kSha256, "date")),
              kServiceDigestMismatch);
    EXPECT_EQ(VerifyHash(context, message, Digest(HashAlgorithm::kSha256, "data")), 0);
}

// What other programs write: each is made by openssl with the same key.
class ForeignMessageTest : public SignTest {
protected:
    ForeignMessageTest() {
        MakeSigner("");
        WriteFile(Path("data"), "data");
    }

    // Leaves signer<number>.pem and key<number>.pem.
    void MakeSigner(const std::string& number) {
        const KeyHandle key(GenerateKey(KeyKind::kRsa, 2048));
        CertificateRequest request;
        request.commonName = "Other";
        const CertificateHandle certificate =
            ParseCertificate(Authority(KeyKind::kRsa).Issue(key.get(), request));
        const BioHandle out(BIO_new_file(Path("key" + number + ".pem").c_str(), "w"));
        PEM_write_bio_PrivateKey(out.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr);
        WriteFile(Path("signer" + number + ".pem"), PemOf(certificate.get()));
    }

    std::string Make(const std::string& options) {
        const ProgramRun run = OpenSsl(
            "cms -sign -binary -outform DER -in data -signer signer.pem -inkey key.pem -out "
            "message " +
            options);
        EXPECT_EQ(run.status, 0) << run.output;
        return ReadFile(Path("message"));
    }
};

TEST_F(ForeignMessageTest, EveryFormThatOpenSslWritesVerifies) {
    void* context = Open();
    for (const char* options :
         {"", "-nodetach", "-noattr", "-noattr -nodetach", "-md sha1", "-md sha384", "-md sha512",
          "-keyid", "-keyid -noattr", "-stream -indef -nodetach", "-indef -stream", "-nosmimecap",
          "-md sha512 -noattr"}) {
        const std::string message = Make(options);
        EXPECT_EQ(VerifyMessage(context, message, "data"), 0) << options;
        EXPECT_NE(VerifyMessage(context, message, "date"), 0) << options;
    }
}

TEST_F(ForeignMessageTest, AnAttachedMessageIsCheckedOverItsOwnDataIfNoneAreGiven) {
    void* context = Open();
    const std::string attached = Make("-nodetach");
    EXPECT_EQ(VerifyMessage(context, attached, ""), 0);
    EXPECT_EQ(Info(context, attached, 1), (Answer{0, "data"}));
    EXPECT_EQ(VerifyMessage(context, attached, "date"), kServiceDigestMismatch);
    EXPECT_EQ(VerifyMessage(context, Make(""), ""), kServiceDigestMismatch);
}

TEST_F(ForeignMessageTest, AMessageWithoutTheSignersCertificateSaysSo) {
    void* context = Open();
    const std::string message = Make("-nocerts");
    EXPECT_EQ(VerifyMessage(context, message, "data"), kServiceSignerMissing);
    EXPECT_EQ(Info(context, message, 2).code, kServiceSignerMissing);
}

TEST_F(ForeignMessageTest, ASignatureWithPssPaddingIsAnUnknownAlgorithm) {
    EXPECT_EQ(VerifyMessage(Open(), Make("-keyopt rsa_padding_mode:pss"), "data"),
              kServiceAlgorithmUnknown);
}

TEST_F(ForeignMessageTest, AChangedDigestOfTheHashIsAMismatchAndAChangedAttributeIsInvalid) {
    void* context = Open();
    const std::string message = Make("");
    std::string changed = message;
    const size_t digest = message.find(Digest(HashAlgorithm::kSha256, "data"));
    ASSERT_NE(digest, std::string::npos);
    changed[digest] ^= 1;
    EXPECT_EQ(VerifyMessage(context, changed, "data"), kServiceDigestMismatch);
    EXPECT_EQ(VerifyMessage(context, message, "date"), kServiceDigestMismatch);
    changed = message;
    const size_t time = message.find("\x17\x0d", digest > 200 ? digest - 200 : 0);
    ASSERT_NE(time, std::string::npos);
    changed[time + 9] = changed[time + 9] == '1' ? '2' : '1';
    EXPECT_EQ(VerifyMessage(context, changed, "data"), kServiceSignatureInvalid);
}

TEST_F(ForeignMessageTest, EverySignerHasToBeGood) {
    void* context = Open();
    MakeSigner("2");
    const std::string twice =
        Make("-signer " + Path("signer2.pem") + " -inkey " + Path("key2.pem"));
    EXPECT_EQ(VerifyMessage(context, twice, "data"), 0);
    std::string changed = twice;
    changed.back() ^= 1;
    EXPECT_EQ(VerifyMessage(context, changed, "data"), kServiceSignatureInvalid);
}

TEST_F(SignTest, EachOfTwoMessagesInTurnIsJudgedByItself) {
    void* context = Open();
    const std::string rsa = LoggedIn(context, KeyKind::kRsa);
    const std::string sm2 = LoggedIn(context, KeyKind::kSm2);
    const std::string first = SignMessage(context, rsa, "first").data;
    const std::string second = SignMessage(context, sm2, "second").data;
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(VerifyMessage(context, first, "first"), 0);
        EXPECT_EQ(VerifyMessage(context, first, "second"), kServiceDigestMismatch);
        EXPECT_EQ(Info(context, first, 2), Export(context, rsa));
        EXPECT_EQ(VerifyMessage(context, second, "second"), 0);
        EXPECT_EQ(Info(context, second, 2), Export(context, sm2));
        EXPECT_EQ(VerifyMessage(context, "no message", "first"), kServiceMessageDamaged);
    }
    std::string damaged = first;
    damaged.back() = static_cast<char>(damaged.back() ^ 1);
    EXPECT_EQ(VerifyMessage(context, damaged, "first"), kServiceSignatureInvalid);
    EXPECT_EQ(VerifyMessage(context, first, "first"), 0);
}

}  // namespace
