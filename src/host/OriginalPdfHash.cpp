#include "host/OriginalPdfHash.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "foundation/Logger.h"
#include "foundation/StringFailure.h"
#include "foundation/Text.h"
#include "host/DataOut.h"
#include "host/ModuleState.h"

namespace {

constexpr int kKeyTypeField = 3;
constexpr int kKeyTypeCapacity = 32;
constexpr int kPdfHashCapacity = 64;

struct PdfHash {
    const char* name = "SHA1";
    unsigned char value[kPdfHashCapacity] = {};
    int length = kPdfHashCapacity;

    std::string Base64() const {
        const int filled = std::clamp(length, 0, kPdfHashCapacity);
        return Base64EncodeBytes(value, static_cast<unsigned int>(filled));
    }
};

const unsigned char* PackHashCert() {
    const std::string_view cert = g_packHashCert.View();
    return cert.empty() ? nullptr : reinterpret_cast<const unsigned char*>(cert.data());
}

int ReadKeyType(unsigned char* keyType) {
    CBuffer value;
    if (const int code = g_appOpt.GetCertificateInfoEx(PackHashCert(), g_packHashCert.Length(),
                                                       kKeyTypeField, value)) {
        return code;
    }
    int length = kKeyTypeCapacity;
    return CopyOutChecked(value.View(), keyType, &length);
}

int ChooseHash(PdfHash& hash) {
    if (g_packHashCert.Empty()) return 0;
    unsigned char keyType[kKeyTypeCapacity + 1] = {};
    if (const int code = ReadKeyType(keyType)) {
        TESMARK_LOG(kLogError, "ParseCertFieldData error:%d", code);
        return code;
    }
    const bool rsa = std::string_view(reinterpret_cast<const char*>(keyType)) == "RSA";
    hash.name = rsa ? "SHA1" : "SM3";
    return 0;
}

// HashFile frees what it was given when it fails, so it gets a block of its own; the string counts
// as consumed all the same.
int HashFileWithPackCert(PdfHash& hash, const char* filePath) {
    const int certLen = g_packHashCert.Length();
    CBuffer cert;
    if (certLen != 0) {
        cert = CBuffer(static_cast<std::size_t>(certLen));
        if (!cert) throw StringFailure(StringFailure::kOutOfMemory);
        std::memcpy(cert.Data(), PackHashCert(), static_cast<std::size_t>(certLen));
    }
    const int result =
        g_appOpt.HashFile(hash.name, filePath, cert.Data(), certLen, hash.value, &hash.length);
    if (result != 0) {
        cert.Release();
        g_packHashCert.Clear();
    }
    return result;
}

}  // namespace

int GeneratePdfHash(const unsigned char* data, int dataLen) {
    if (const int code = EnsureServiceReady()) return code;
    PdfHash hash;
    if (const int code = ChooseHash(hash)) return code;
    const int result = g_appOpt.HashData(hash.name, data, dataLen, PackHashCert(),
                                         g_packHashCert.Length(), hash.value, &hash.length);
    g_originalPdfHash.Assign(hash.Base64());
    TESMARK_LOG(kLogError, "Original Sign Pdf Hash : %s", g_originalPdfHash.Text().c_str());
    return result;
}

int GeneratePdfFileHash(const char* filePath) {
    if (const int code = EnsureServiceReady()) return code;
    PdfHash hash;
    if (const int code = ChooseHash(hash)) return code;
    const int result = HashFileWithPackCert(hash, filePath);
    g_originalPdfHash.Assign(hash.Base64());
    TESMARK_LOG(kLogError, "Original Sign Pdf file Hash : %s", g_originalPdfHash.Text().c_str());
    return result;
}
