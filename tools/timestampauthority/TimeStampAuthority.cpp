#include "tools/timestampauthority/TimeStampAuthority.h"

#include <openssl/err.h>
#include <openssl/pem.h>
#include <openssl/ts.h>
#include <openssl/x509v3.h>

namespace {

using StampContextHandle = OpenSslHandle<TS_RESP_CTX, TS_RESP_CTX_free>;
using StampResponseHandle = OpenSslHandle<TS_RESP, TS_RESP_free>;
using ExtensionHandle = OpenSslHandle<X509_EXTENSION, X509_EXTENSION_free>;

constexpr unsigned int kRsaBits = 2048;
constexpr int kSerialBits = 63;
constexpr long kHour = 3600;
constexpr int kLifeDays = 365;

bool SetRandomSerial(ASN1_INTEGER* serial) {
    const BignumHandle number(BN_new());
    return number && BN_rand(number.get(), kSerialBits, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY) == 1 &&
           BN_to_ASN1_INTEGER(number.get(), serial) != nullptr;
}

bool AddExtension(X509* certificate, X509* issuer, int kind, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx(&context, issuer, certificate, nullptr, nullptr, 0);
    const ExtensionHandle extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    return extension && X509_add_ext(certificate, extension.get(), -1) == 1;
}

// RFC 3161, section 2.3: the one purpose of the key stands in a critical extension.
bool AddExtensions(X509* certificate, X509* issuer) {
    return AddExtension(certificate, issuer, NID_basic_constraints, "CA:FALSE") &&
           AddExtension(certificate, issuer, NID_key_usage,
                        "critical,digitalSignature,nonRepudiation") &&
           AddExtension(certificate, issuer, NID_ext_key_usage, "critical,timeStamping") &&
           AddExtension(certificate, issuer, NID_subject_key_identifier, "hash") &&
           AddExtension(certificate, issuer, NID_authority_key_identifier, "keyid");
}

bool SetSubject(X509* certificate) {
    constexpr unsigned char kName[] = "Velmora Development Time Stamps";
    return X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_ASC, kName,
                                      -1, -1, 0) == 1;
}

CertificateHandle Issue(EVP_PKEY* key, X509* issuer, EVP_PKEY* issuerKey) {
    CertificateHandle certificate(X509_new());
    X509* const raw = certificate.get();
    const bool done = raw != nullptr && X509_set_version(raw, X509_VERSION_3) == 1 &&
                      SetRandomSerial(X509_get_serialNumber(raw)) && SetSubject(raw) &&
                      X509_set_issuer_name(raw, X509_get_subject_name(issuer)) == 1 &&
                      X509_gmtime_adj(X509_getm_notBefore(raw), -kHour) != nullptr &&
                      X509_time_adj_ex(X509_getm_notAfter(raw), kLifeDays, 0, nullptr) != nullptr &&
                      X509_set_pubkey(raw, key) == 1 && AddExtensions(raw, issuer) &&
                      X509_sign(raw, issuerKey, EVP_sha256()) > 0;
    return done ? std::move(certificate) : nullptr;
}

// Freed by who asked for it.
ASN1_INTEGER* NextSerial(TS_RESP_CTX*, void*) {
    OpenSslHandle<ASN1_INTEGER, ASN1_INTEGER_free> serial(ASN1_INTEGER_new());
    return serial && SetRandomSerial(serial.get()) ? serial.release() : nullptr;
}

bool AddHashes(TS_RESP_CTX* context) {
    for (const EVP_MD* const hash : {EVP_sha256(), EVP_sha384(), EVP_sha512(), EVP_sm3()}) {
        if (TS_RESP_CTX_add_md(context, hash) != 1) return false;
    }
    return true;
}

bool SetUp(TS_RESP_CTX* context, X509* certificate, EVP_PKEY* key, X509* issuer) {
    const ObjectIdHandle policy(OBJ_txt2obj(kAuthorityPolicy, 1));
    STACK_OF(X509)* const chain = sk_X509_new_null();
    const bool done = context != nullptr && policy && chain != nullptr &&
                      sk_X509_push(chain, issuer) > 0 &&
                      TS_RESP_CTX_set_signer_cert(context, certificate) == 1 &&
                      TS_RESP_CTX_set_signer_key(context, key) == 1 &&
                      TS_RESP_CTX_set_signer_digest(context, EVP_sha256()) == 1 &&
                      TS_RESP_CTX_set_ess_cert_id_digest(context, EVP_sha256()) == 1 &&
                      TS_RESP_CTX_set_certs(context, chain) == 1 &&
                      TS_RESP_CTX_set_def_policy(context, policy.get()) == 1 &&
                      TS_RESP_CTX_set_accuracy(context, 1, 0, 0) == 1 && AddHashes(context);
    // The context has taken references of its own.
    sk_X509_free(chain);
    return done;
}

}  // namespace

class TimeStampAuthority::Context {
public:
    CertificateHandle certificate;
    KeyHandle key;
    StampContextHandle stamps;
};

TimeStampAuthority::TimeStampAuthority(std::unique_ptr<Context> context)
    : m_context(std::move(context)) {}

TimeStampAuthority::~TimeStampAuthority() = default;

std::unique_ptr<TimeStampAuthority> TimeStampAuthority::Make(X509* issuer, EVP_PKEY* issuerKey) {
    auto context = std::make_unique<Context>();
    context->key.reset(EVP_RSA_gen(kRsaBits));
    if (!context->key) return nullptr;
    context->certificate = Issue(context->key.get(), issuer, issuerKey);
    context->stamps.reset(TS_RESP_CTX_new());
    TS_RESP_CTX* const stamps = context->stamps.get();
    if (!context->certificate ||
        !SetUp(stamps, context->certificate.get(), context->key.get(), issuer)) {
        return nullptr;
    }
    TS_RESP_CTX_set_serial_cb(stamps, &NextSerial, nullptr);
    return std::unique_ptr<TimeStampAuthority>(new TimeStampAuthority(std::move(context)));
}

std::string TimeStampAuthority::Answer(std::string_view request) {
    const BioHandle in(BIO_new_mem_buf(request.data(), static_cast<int>(request.size())));
    if (!in) return {};
    const StampResponseHandle response(TS_RESP_create_response(m_context->stamps.get(), in.get()));
    ERR_clear_error();
    return response ? DerOf<i2d_TS_RESP>(response.get()) : std::string();
}

std::string TimeStampAuthority::HttpAnswer(std::string_view request) {
    const std::string body = Answer(request);
    return std::string(body.empty() ? "HTTP/1.1 500 Internal Server Error" : "HTTP/1.1 200 OK") +
           "\r\nContent-Type: application/timestamp-reply\r\nConnection: close\r\n"
           "Content-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + body;
}

std::string TimeStampAuthority::Certificate() const {
    const BioHandle out(BIO_new(BIO_s_mem()));
    if (!out || PEM_write_bio_X509(out.get(), m_context->certificate.get()) != 1) return {};
    char* data = nullptr;
    const long size = BIO_get_mem_data(out.get(), &data);
    return std::string(data, static_cast<std::size_t>(size));
}
