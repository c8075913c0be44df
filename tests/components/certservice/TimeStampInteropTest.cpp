#include <openssl/pem.h>

#include "components/certservice/StampTest.h"

namespace {

// Tokens and verdicts of the openssl program.
class TimeStampInteropTest : public StampTest {
protected:
    TimeStampInteropTest() {
        WriteFile(Path("serial"), "0A");
        WriteFile(Path("tsa.pem"), m_stamper.CertificatePem());
        const BioHandle out(BIO_new_file(Path("tsa.key").c_str(), "w"));
        PEM_write_bio_PrivateKey(out.get(), m_stamper.Key(), nullptr, nullptr, 0, nullptr, nullptr);
    }

    // Answers the request in the file "request" into "response".
    void Reply(const std::string& settings, const std::string& options = "") {
        WriteFile(Path("ts.cnf"),
                  "[tsa]\ndefault_tsa=t\n[t]\nserial=serial\ndefault_policy=1.2.3.4.1\n"
                  "digests=sha256\n" +
                      settings);
        const ProgramRun run = OpenSsl(
            "ts -reply -config ts.cnf -queryfile request -signer tsa.pem -inkey tsa.key -out "
            "response " +
            options);
        ASSERT_EQ(run.status, 0) << run.output;
    }

    // A message with the program's token for it.
    std::string Stamped(const std::string& message, const std::string& settings,
                        const std::string& options = "") {
        WriteFile(Path("request"), Request(Imprint(message)).data);
        Reply(settings, options);
        const Answer stamped = Stamp(ReadFile(Path("response")), message);
        EXPECT_EQ(stamped.code, 0);
        return stamped.data;
    }

    ProgramRun VerifyToken(const std::string& token, const std::string& option) {
        WriteFile(Path("token"), token);
        return OpenSsl("ts -verify -in token -token_in -CAfile trust/velmora-development-rsa.pem " +
                       option);
    }

    StampAuthority m_stamper = Stamper(KeyKind::kRsa);
};

TEST_F(TimeStampInteropTest, WhatOpenSslStampsIsMergedAndOpenSslAcceptsBothAfterwards) {
    const std::string message = Message();
    WriteFile(Path("data"), "data");
    for (const char* settings :
         {"signer_digest=sha256\n", "signer_digest=sha512\ness_cert_id_alg=sha256\n",
          "signer_digest=sha256\ness_cert_id_alg=sha1\n",
          "signer_digest=sha384\nordering=yes\ntsa_name=yes\nclock_precision_digits=3\n"
          "accuracy=secs:1,millisecs:500,microsecs:100\n"}) {
        const std::string stamped = Stamped(message, settings);
        EXPECT_EQ(VerifyMessage(stamped), 0);
        EXPECT_EQ(VerifyStamp(stamped), 0) << settings;
        const Answer token = StampField(stamped, 8);
        ASSERT_EQ(token.code, 0);
        ProgramRun run = VerifyToken(token.data, "-queryfile request");
        EXPECT_EQ(run.status, 0) << run.output << "the nonce is that of the request";
        run = VerifyToken(token.data, "-digest " + StampDigest(message));
        EXPECT_EQ(run.status, 0) << run.output;
        WriteFile(Path("stamped"), stamped);
        run = OpenSsl(
            "cms -verify -binary -inform DER -in stamped -content data -out out -CAfile "
            "trust/velmora-development-rsa.pem -purpose any");
        EXPECT_EQ(run.status, 0) << run.output;
    }
}

TEST_F(TimeStampInteropTest, ATokenSignedOverSha1IsNotTaken) {
    const std::string message = Message();
    WriteFile(Path("request"), Request(Imprint(message)).data);
    Reply("signer_digest=sha1\ness_cert_id_alg=sha1\n");
    EXPECT_EQ(Stamp(ReadFile(Path("response")), message).code, kServiceTimeStampAlgorithmUnknown);
}

TEST_F(TimeStampInteropTest, AFieldTellsWhatOpenSslWasToldToSay) {
    const std::string stamped =
        Stamped(Message(),
                "signer_digest=sha256\naccuracy=secs:1,millisecs:500,microsecs:100\n"
                "ordering=yes\ntsa_name=yes\n");
    EXPECT_EQ(StampField(stamped, 2).data, "0B");
    EXPECT_EQ(StampField(stamped, 3).data, "1.2.3.4.1");
    EXPECT_EQ(StampField(stamped, 4).data, "C=CN, CN=Time Stamps");
    EXPECT_EQ(StampField(stamped, 5).data, m_stamper.Certificate());
    EXPECT_EQ(StampField(stamped, 9).data, "1.500100");
    EXPECT_EQ(StampField(stamped, 11).data, "1");
    const ProgramRun query = OpenSsl("ts -query -in request -text");
    std::string nonce = StampField(stamped, 10).data;
    // The program writes whole bytes, so that a number of an odd count of digits begins with a
    // zero.
    nonce.erase(0, nonce.find_first_not_of('0'));
    nonce.insert(0, nonce.size() % 2, '0');
    EXPECT_NE(query.output.find("Nonce: 0x" + nonce), std::string::npos) << query.output << nonce;
}

TEST_F(TimeStampInteropTest, TheAuthoritysIntermediateMayStandInTheToken) {
    const auto intermediate =
        Authority(KeyKind::kRsa).MakeSubordinate(KeyKind::kRsa, {.commonName = "Intermediate"});
    m_stamper = StampAuthority(*intermediate, KeyKind::kRsa);
    WriteFile(Path("tsa.pem"), m_stamper.CertificatePem());
    const BioHandle out(BIO_new_file(Path("tsa.key").c_str(), "w"));
    PEM_write_bio_PrivateKey(out.get(), m_stamper.Key(), nullptr, nullptr, 0, nullptr, nullptr);
    BIO_flush(out.get());
    WriteFile(Path("intermediate.pem"), intermediate->CertificatePem());
    const std::string message = Message();
    const std::string without = Stamped(message, "signer_digest=sha256\n");
    EXPECT_EQ(VerifyStamp(without), kServiceTimeStampUntrusted);
    const std::string with = Stamped(message, "signer_digest=sha256\n", "-chain intermediate.pem");
    EXPECT_EQ(VerifyStamp(with), 0);
    const std::string chained = Stamped(message, "signer_digest=sha256\ness_cert_id_chain=yes\n",
                                        "-chain intermediate.pem");
    EXPECT_EQ(VerifyStamp(chained), 0);
}

TEST_F(TimeStampInteropTest, ARefusalOfOpenSslIsARefusal) {
    const std::string message = Message();
    WriteFile(Path("request"), Request(std::string(20, 'x'), 2).data);
    Reply("signer_digest=sha256\n");
    EXPECT_EQ(Stamp(ReadFile(Path("response")), message).code, kServiceTimeStampRefused);
}

TEST_F(TimeStampInteropTest, OpenSslAcceptsTheTokensThatTheseTestsMake) {
    const std::string message = Message();
    for (const Ess ess : {Ess::kVersion1, Ess::kVersion2}) {
        const ProgramRun run =
            VerifyToken(m_stamper.Token({.imprint = Imprint(message), .ess = ess}),
                        "-digest " + StampDigest(message));
        EXPECT_EQ(run.status, 0) << run.output;
    }
    for (const Ess ess : {Ess::kNone, Ess::kOtherCertificate, Ess::kOtherIssuer}) {
        const ProgramRun run =
            VerifyToken(m_stamper.Token({.imprint = Imprint(message), .ess = ess}),
                        "-digest " + StampDigest(message));
        EXPECT_NE(run.status, 0) << run.output;
    }
}

}  // namespace
