#include "tests/components/seallibrary/LibraryFixture.h"

#include <openssl/x509.h>

#include <algorithm>

#include "components/crypto/Signature.h"
#include "components/seallibrary/SealForm.h"
#include "foundation/Text.h"

int StandInScript::Count(const std::string& call) const {
    return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

LibraryFixture::LibraryFixture() {
    m_prefix.RegisterCertService(STAND_IN_SERVICE);
    m_service = platform::LoadModule(STAND_IN_SERVICE);
    void* const script = platform::FindSymbol(m_service, kStandInScriptName);
    m_script = reinterpret_cast<StandInScriptFunction>(script)();
    *m_script = {};
}

LibraryFixture::~LibraryFixture() {
    TVK_Release();
    EXPECT_EQ(m_script->openContexts, 0);
    platform::FreeModule(m_service);
}

void LibraryFixture::GiveKey(const std::string& certId, const TestIdentity& identity) {
    const OpenSslHandle<PKCS8_PRIV_KEY_INFO, PKCS8_PRIV_KEY_INFO_free> plain(
        EVP_PKEY2PKCS8(identity.key.get()));
    m_script->keys[certId] = {identity.certificate, DerOf<i2d_PKCS8_PRIV_KEY_INFO>(plain.get())};
}

std::string LibraryFixture::HashFor(const TestIdentity& signer, std::string_view data) {
    const bool sm2 = KindOfKey(signer.key.get()) == KeyKind::kSm2;
    return Digest(sm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256, data);
}

const char* LibraryFixture::AlgorithmFor(const TestIdentity& signer) {
    return KindOfKey(signer.key.get()) == KeyKind::kSm2 ? kSm2WithSm3 : kSha256WithRsa;
}

int LibraryFixture::Sign(const std::string& certId, const TestIdentity& signer,
                         const std::string& hash, const std::string& seal, unsigned char* out,
                         int* outLen) {
    const std::string algorithm = AlgorithmFor(signer);
    return TVK_Sign(Bytes(certId), Size(certId), Bytes(m_property), Size(m_property),
                    Bytes(algorithm), Size(algorithm), Bytes(hash), Size(hash), Bytes(m_time),
                    Size(m_time), Bytes(seal), Size(seal), out, outLen);
}

std::string LibraryFixture::SignData(const std::string& certId, const TestIdentity& signer,
                                     const std::string& data, const std::string& seal) {
    const std::string hash = HashFor(signer, data);
    int length = 0;
    EXPECT_EQ(Sign(certId, signer, hash, seal, nullptr, &length), 0);
    std::string signature(static_cast<std::size_t>(length), '\0');
    auto* out = reinterpret_cast<unsigned char*>(signature.data());
    EXPECT_EQ(Sign(certId, signer, hash, seal, out, &length), 0);
    EXPECT_EQ(length, Size(signature));
    return signature;
}

int LibraryFixture::VerifyData(const std::string& signature, const std::string& data) {
    const std::string text = Base64Encode(data);
    return TVK_Verify_SES_Sign(Bytes(signature), Size(signature), Bytes(text), Size(text));
}
