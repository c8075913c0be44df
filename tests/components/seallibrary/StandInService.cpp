#include "tests/components/seallibrary/StandInService.h"

#include <openssl/x509.h>

#include <cstring>

#include "components/crypto/Handles.h"
#include "components/crypto/Signature.h"
#include "platform/closed/CertService.h"

namespace {

constexpr int kNoSuchKey = 0x0B000010;

StandInScript& Script() {
    static StandInScript script;
    return script;
}

int CopyOut(const std::string& bytes, unsigned char* out, int* outLen) {
    if (out) std::memcpy(out, bytes.data(), bytes.size());
    *outLen = static_cast<int>(bytes.size());
    return 0;
}

KeyHandle KeyFrom(const std::string& pkcs8) {
    const auto* at = reinterpret_cast<const unsigned char*>(pkcs8.data());
    const OpenSslHandle<PKCS8_PRIV_KEY_INFO, PKCS8_PRIV_KEY_INFO_free> plain(
        d2i_PKCS8_PRIV_KEY_INFO(nullptr, &at, static_cast<long>(pkcs8.size())));
    return KeyHandle(plain ? EVP_PKCS82PKEY(plain.get()) : nullptr);
}

HashAlgorithm HashOf(EVP_PKEY* key) {
    return KindOfKey(key) == KeyKind::kSm2 ? HashAlgorithm::kSm3 : HashAlgorithm::kSha256;
}

}  // namespace

extern "C" StandInScript* StandIn_Script() { return &Script(); }

int SOF_Initialize(void** context) {
    Script().calls.emplace_back("SOF_Initialize");
    if (Script().initializeResult) return Script().initializeResult;
    *context = new int(++Script().openContexts);
    return 0;
}

int SOF_Finalize(void* context) {
    Script().calls.emplace_back("SOF_Finalize");
    --Script().openContexts;
    delete static_cast<int*>(context);
    return 0;
}

int SOF_ExportUserCert(void*, const char* certId, unsigned char* out, int* outLen) {
    Script().calls.emplace_back("SOF_ExportUserCert");
    if (Script().exportResult) return Script().exportResult;
    const auto found = Script().keys.find(certId);
    if (found == Script().keys.end()) return kNoSuchKey;
    return CopyOut(found->second.certificate, out, outLen);
}

int SOF_SetSignMethod(void*, int method) {
    Script().calls.push_back("SOF_SetSignMethod " + std::to_string(method));
    return Script().setMethodResult;
}

int SOF_SignData(void*, const char* certId, const unsigned char* data, int dataLen,
                 unsigned char* out, int* outLen) {
    static std::string kept;
    Script().calls.emplace_back(out ? "SOF_SignData" : "SOF_SignData size");
    if (Script().signResult) return Script().signResult;
    if (out) return CopyOut(kept, out, outLen);
    const KeyHandle key = KeyFrom(Script().keys.at(certId).key);
    std::string text(reinterpret_cast<const char*>(data), static_cast<std::size_t>(dataLen));
    if (Script().signsOtherData) text += "!";
    kept = SignData(key.get(), HashOf(key.get()), text);
    if (Script().bareSignatures) {
        // SEQUENCE { r, s } of 70 to 72 bytes: two INTEGERs, each with or without a leading zero.
        std::string bare;
        for (std::size_t at = 2; at < kept.size();) {
            const auto size = static_cast<unsigned char>(kept[at + 1]);
            std::string number = kept.substr(at + 2, size);
            while (number.size() > 32) number.erase(0, 1);
            bare += std::string(32 - number.size(), '\0') + number;
            at += 2 + size;
        }
        kept = bare;
    }
    return CopyOut(kept, nullptr, outLen);
}

int SOF_ValidateCert(void*, const unsigned char* cert, int certLen) {
    Script().calls.emplace_back("SOF_ValidateCert");
    const auto& results = Script().validations;
    const auto found = results.find(
        std::string(reinterpret_cast<const char*>(cert), static_cast<std::size_t>(certLen)));
    return found == results.end() ? 0 : found->second;
}

int SetUserConfig(void*, int number, const char* text) {
    Script().calls.push_back("SetUserConfig " + std::to_string(number) + " " + text);
    return Script().userConfigResult;
}
