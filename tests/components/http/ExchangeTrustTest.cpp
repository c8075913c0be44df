// Whose certificates an exchange trusts: libcurl's own calls, with a folder of the test's in the
// place of the system's.

#include <gtest/gtest.h>
#include <openssl/pem.h>

#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <memory>
#include <set>

#include "components/http/Exchange.h"
#include "platform/CurlLibrary.h"
#include "support/LoopbackServer.h"
#include "support/NoProxy.h"
#include "support/TemporaryFolder.h"

#undef curl_easy_setopt

namespace {

// What stands at the place of libcurl's compiled-in folder; empty: nothing.
std::string& SystemFolder() {
    static std::string folder;
    return folder;
}

// Options of which this libcurl knows nothing.
std::set<CURLoption>& UnknownOptions() {
    static std::set<CURLoption> options;
    return options;
}

CURL* InitWithSystemFolder() {
    CURL* const handle = curl_easy_init();
    if (handle == nullptr || SystemFolder().empty()) return handle;
    curl_easy_setopt(handle, CURLOPT_CAPATH, SystemFolder().c_str());
    curl_easy_setopt(handle, CURLOPT_PROXY_CAPATH, SystemFolder().c_str());
    return handle;
}

CURLcode SetKnownOption(CURL* handle, CURLoption option, ...) {
    if (UnknownOptions().contains(option)) return CURLE_NOT_BUILT_IN;
    va_list arguments;
    va_start(arguments, option);
    CURLcode result = CURLE_OK;
    if (option < CURLOPTTYPE_OBJECTPOINT) {
        result = curl_easy_setopt(handle, option, va_arg(arguments, long));
    } else if (option < CURLOPTTYPE_OFF_T) {
        result = curl_easy_setopt(handle, option, va_arg(arguments, void*));
    } else {
        result = curl_easy_setopt(handle, option, va_arg(arguments, curl_off_t));
    }
    va_end(arguments);
    return result;
}

}  // namespace

namespace platform {

// Links ahead of the platform's.
const CurlLibrary& GetCurlLibrary() {
    static constexpr CurlLibrary curl{&curl_global_init,  &InitWithSystemFolder,
                                      &SetKnownOption,    &curl_easy_perform,
                                      &curl_easy_cleanup, &curl_easy_strerror};
    return curl;
}

}  // namespace platform

namespace {

using Scheme = LoopbackServer::Scheme;
using Request = LoopbackServer::Request;

// As OpenSSL looks it up in a folder.
std::string HashedName(const std::string& pem) {
    const std::unique_ptr<BIO, decltype(&BIO_free)> source(
        BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())), &BIO_free);
    const std::unique_ptr<X509, decltype(&X509_free)> certificate(
        PEM_read_bio_X509(source.get(), nullptr, nullptr, nullptr), &X509_free);
    char name[16] = {};
    if (certificate)
        std::snprintf(name, sizeof name, "%08lx.0", X509_subject_name_hash(certificate.get()));
    return name;
}

// A certificate that signs itself, with a name of its own: of two with one name OpenSSL would see
// the first alone.
std::string StrangersCertificate() {
    const std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"),
                                                                  &EVP_PKEY_free);
    const std::unique_ptr<X509, decltype(&X509_free)> made(X509_new(), &X509_free);
    const auto* const name = reinterpret_cast<const unsigned char*>("Stranger");
    auto* const subject = X509_get_subject_name(made.get());
    X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_ASC, name, -1, -1, 0);
    X509_set_issuer_name(made.get(), subject);
    X509_gmtime_adj(X509_getm_notBefore(made.get()), -60);
    X509_gmtime_adj(X509_getm_notAfter(made.get()), 3'600);
    X509_set_pubkey(made.get(), key.get());
    X509_sign(made.get(), key.get(), EVP_sha256());
    const std::unique_ptr<BIO, decltype(&BIO_free)> out(BIO_new(BIO_s_mem()), &BIO_free);
    PEM_write_bio_X509(out.get(), made.get());
    char* data = nullptr;
    const long size = BIO_get_mem_data(out.get(), &data);
    return std::string(data, static_cast<std::size_t>(size));
}

class ExchangeTrustTest : public testing::Test {
protected:
    ExchangeTrustTest() {
        m_settings.connectTimeoutMs = 120'000;
        m_settings.timeoutMs = 120'000;
    }
    ~ExchangeTrustTest() override {
        SystemFolder().clear();
        UnknownOptions().clear();
    }

    static std::string Page(const Request&) { return LoopbackServer::Page("200 OK", "<a/>"); }
    void Write(const std::string& path, const std::string& content) const {
        std::ofstream(path, std::ios::binary) << content;
    }
    // From here on the system trusts that server.
    void LetSystemTrust(const LoopbackServer& server) const {
        Write(m_folder.Below(HashedName(server.Certificate())), server.Certificate());
        SystemFolder() = m_folder.Path();
    }
    void SetCaFile(const std::string& pem) {
        m_settings.caFile = m_folder.Below("ca.pem");
        Write(m_settings.caFile, pem);
    }
    // libcurl's code; 0 is an answer.
    int Ask(const std::string& url) const {
        const ExchangeOutcome outcome =
            PostRequest(m_settings, {.url = url, .body = "<q/>", .largestAnswer = 1'000});
        return outcome.curlCode;
    }

    TemporaryFolder m_folder;
    NoProxy m_noProxy;
    ExchangeSettings m_settings;
    LoopbackServer m_server{Page, Scheme::Https};
};

TEST_F(ExchangeTrustTest, WithoutACaFileTheSystemsFolderIsTrusted) {
    EXPECT_EQ(Ask(m_server.Url("/")), CURLE_PEER_FAILED_VERIFICATION);
    LetSystemTrust(m_server);
    EXPECT_EQ(Ask(m_server.Url("/")), CURLE_OK);
}

TEST_F(ExchangeTrustTest, WithACaFileTheSystemsFolderIsNot) {
    LetSystemTrust(m_server);
    SetCaFile(StrangersCertificate());
    EXPECT_EQ(Ask(m_server.Url("/")), CURLE_PEER_FAILED_VERIFICATION);
    EXPECT_TRUE(m_server.Requests().empty());
    SetCaFile(m_server.Certificate());
    EXPECT_EQ(Ask(m_server.Url("/")), CURLE_OK);
}

TEST_F(ExchangeTrustTest, AProxyOverHttpsIsTrustedLikeAServer) {
    m_settings.proxy = m_server.Url("");
    EXPECT_EQ(Ask("http://service.invalid/"), CURLE_PEER_FAILED_VERIFICATION);
    LetSystemTrust(m_server);
    EXPECT_EQ(Ask("http://service.invalid/"), CURLE_OK);
    SetCaFile(StrangersCertificate());
    EXPECT_EQ(Ask("http://service.invalid/"), CURLE_PEER_FAILED_VERIFICATION);
    SystemFolder().clear();
    SetCaFile(m_server.Certificate());
    EXPECT_EQ(Ask("http://service.invalid/"), CURLE_OK);
}

TEST_F(ExchangeTrustTest, ALibcurlWithoutFoldersOfCertificatesHasNoneToLeaveOut) {
    UnknownOptions() = {CURLOPT_CAPATH, CURLOPT_PROXY_CAPATH};
    SetCaFile(m_server.Certificate());
    EXPECT_EQ(Ask(m_server.Url("/")), CURLE_OK);
}

}  // namespace
