#include "components/timestamp/TimeStampFixture.h"

#include <openssl/ts.h>

#include "components/certservice/Certificate.h"
#include "components/certservice/DevelopmentCa.h"
#include "foundation/Text.h"
#include "tools/timestampauthority/TimeStampAuthority.h"

namespace {

struct TestAuthority {
    TestAuthority() {
        CertificateRequest subject;
        subject.commonName = "Root of the test";
        const auto ca = DevelopmentCa::Make(KeyKind::kRsa, subject);
        const CertificateHandle issuer = ParseCertificate(ca->Certificate());
        certificate = ca->CertificatePem();
        authority = TimeStampAuthority::Make(issuer.get(), ca->Key());
    }

    std::string certificate;
    std::unique_ptr<TimeStampAuthority> authority;
};

TestAuthority& Authority() {
    static TestAuthority authority;
    return authority;
}

using RequestHandle = OpenSslHandle<TS_REQ, TS_REQ_free>;
using ImprintHandle = OpenSslHandle<TS_MSG_IMPRINT, TS_MSG_IMPRINT_free>;
using AlgorithmHandle = OpenSslHandle<X509_ALGOR, X509_ALGOR_free>;
using IntegerHandle = OpenSslHandle<ASN1_INTEGER, ASN1_INTEGER_free>;

}  // namespace

std::string MakeRequest(const RequestForm& form) {
    const RequestHandle request(TS_REQ_new());
    const ImprintHandle imprint(TS_MSG_IMPRINT_new());
    const AlgorithmHandle algorithm(X509_ALGOR_new());
    const EVP_MD* const hash = EVP_get_digestbyname(form.hash.c_str());
    X509_ALGOR_set_md(algorithm.get(), hash);
    std::string bytes(static_cast<std::size_t>(EVP_MD_get_size(hash)), form.imprint);
    TS_MSG_IMPRINT_set_algo(imprint.get(), algorithm.get());
    TS_MSG_IMPRINT_set_msg(imprint.get(), reinterpret_cast<unsigned char*>(bytes.data()),
                           static_cast<int>(bytes.size()));
    TS_REQ_set_version(request.get(), 1);
    TS_REQ_set_msg_imprint(request.get(), imprint.get());
    TS_REQ_set_cert_req(request.get(), 1);
    if (form.nonce != 0) {
        const IntegerHandle nonce(ASN1_INTEGER_new());
        ASN1_INTEGER_set(nonce.get(), form.nonce);
        TS_REQ_set_nonce(request.get(), nonce.get());
    }
    if (!form.policy.empty()) {
        const ObjectIdHandle policy(OBJ_txt2obj(form.policy.c_str(), 1));
        TS_REQ_set_policy_id(request.get(), policy.get());
    }
    return DerOf<i2d_TS_REQ>(request.get());
}

std::string Stamp(std::string_view request) { return Authority().authority->Answer(request); }

const std::string& AuthorityCa() { return Authority().certificate; }

std::string HttpReply(const std::string& body) {
    return LoopbackServer::Page("200 OK", body, "Content-Type: application/timestamp-reply\r\n");
}

EngineOutcome TimeStampTest::Ask(const std::vector<std::string>& urls) {
    m_settings.urls = urls;
    return AskAuthorities(m_settings, Base64Encode(m_request));
}

std::string TimeStampTest::FaultOf(LoopbackServer::Handler handler) {
    const LoopbackServer server(std::move(handler));
    const EngineOutcome outcome = Ask(server);
    EXPECT_FALSE(outcome.response.has_value());
    if (outcome.records.size() != 1) return "no single record";
    const std::string& text = outcome.records.front().text;
    const std::string front = server.Url("/tsa: ");
    return text.starts_with(front) ? text.substr(front.size()) : "no address: " + text;
}

std::string TimeStampTest::FaultOf(const std::string& httpAnswer) {
    return FaultOf([&](const Request&) { return httpAnswer; });
}
