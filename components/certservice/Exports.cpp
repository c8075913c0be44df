#include <climits>
#include <cstring>
#include <exception>

#include "components/certservice/Base64Text.h"
#include "components/certservice/ExportFrame.h"
#include "components/certservice/ServiceCodes.h"
#include "foundation/Text.h"
#include "platform/closed/CertService.h"

// The version script makes these visible; each is a frame around CertService.

namespace {

constexpr int kHardwareKeys = 1;
constexpr int kDeviceKind = 7;
constexpr int kRevocationListSetting = 5;

// A signing call: its result is kept under what is signed, with whose key.
std::string SigningArguments(const std::string& certId, const CertService::ToSign& toSign) {
    return certId + '\0' + std::to_string(static_cast<int>(toSign.hash)) + '\0' + toSign.digest +
           toSign.certificate;
}

// The frame of the two calls that sign data. A fetch that has its query before it is served
// without another look at the key.
int SignFrom(CertService& service, TwoStep call, const char* certId, const In& input,
             int (CertService::*sign)(const std::string&, const CertService::ToSign&, std::string&),
             unsigned char* out, int* outLen) {
    if (!certId || !input.valid || !outLen) return kServiceBadArgument;
    CertService::ToSign toSign;
    const bool kept = out && service.RecallData(certId, input.bytes, toSign) &&
                      service.Pending().Holds(call, SigningArguments(certId, toSign));
    if (!kept) {
        if (const int code = service.PrepareData(certId, input.bytes, toSign)) return code;
    }
    if (call == TwoStep::kSignMessage) {
        if (const int code = service.CheckMessageData(toSign, input.bytes)) return code;
    }
    const auto compute = [&](std::string& result) {
        return (service.*sign)(certId, toSign, result);
    };
    return service.Pending().Serve(call, SigningArguments(certId, toSign), compute, out, outLen);
}

}  // namespace

int SOF_Initialize(void** context) {
    if (!context) return kServiceBadArgument;
    return Guard([&] {
        *context = OpenContext();
        return kServiceOk;
    });
}

int SOF_Finalize(void* context) {
    return Guard([&] { return CloseContext(context) ? kServiceOk : kServiceNotInitialised; });
}

int SOF_Login(void* context, const char* certId, const char* pin) {
    return WithContext(context, [&](CertService& service) -> int {
        if (!certId || !pin) return kServiceBadArgument;
        return service.Keys().Login(certId, pin);
    });
}

int SOF_Logout(void* context, const char* certId) {
    return WithContext(context, [&](CertService& service) -> int {
        if (!certId) return kServiceBadArgument;
        return service.Keys().Logout(certId);
    });
}

int SOF_GetLastLoginCertID(void* context, const char*, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) {
        return HandOut(service.Keys().LastLogin(), out, outLen);
    });
}

int SOF_GetUserList(void* context, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) {
        const auto list = [&](std::string& result) { return service.Keys().UserList(result); };
        return service.Pending().Serve(TwoStep::kUserList, {}, list, out, outLen);
    });
}

int SOF_ExportUserCert(void* context, const char* certId, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        if (!certId) return kServiceBadArgument;
        const auto read = [&](std::string& der) {
            return service.Keys().ExportCertificate(certId, der);
        };
        return service.Pending().Serve(TwoStep::kExportCertificate, certId, read, out, outLen);
    });
}

int GetDeviceCountEx(void* context, int kind, int* count) {
    return WithContext(context, [&](CertService& service) -> int {
        if (!count || kind != kHardwareKeys) return kServiceBadArgument;
        *count = service.Keys().CountKeys();
        return kServiceOk;
    });
}

int GetDeviceInfo(void* context, const char* certId, int item, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        if (!certId) return kServiceBadArgument;
        if (item != kDeviceKind) return kServiceNoSuchField;
        std::string der;
        if (const int code = service.Keys().ExportCertificate(certId, der)) return code;
        return HandOut("HARD", out, outLen);
    });
}

int EnumFilesInDevice(void* context, const char* certId, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        if (!certId) return kServiceBadArgument;
        const auto list = [&](std::string& names) {
            return service.Keys().FileList(certId, names);
        };
        return service.Pending().Serve(TwoStep::kFileList, certId, list, out, outLen);
    });
}

int SOF_ReadFile(void* context, const char* certId, const char* fileName, unsigned char* out,
                 int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        if (!certId || !fileName) return kServiceBadArgument;
        const auto read = [&](std::string& content) {
            return service.Keys().ReadFile(certId, fileName, content);
        };
        const std::string arguments = std::string(certId) + '\0' + fileName;
        return service.Pending().Serve(TwoStep::kReadFile, arguments, read, out, outLen);
    });
}

int SOF_SetSignMethod(void* context, int method) {
    return WithContext(context,
                       [&](CertService& service) { return service.SetSignMethod(method); });
}

int SOF_SignData(void* context, const char* certId, const unsigned char* data, int dataLen,
                 unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) {
        return SignFrom(service, TwoStep::kSignData, certId, In(data, dataLen), &CertService::Sign,
                        out, outLen);
    });
}

// The two flags are 1 in every call there is; the message is detached.
int SOF_SignMessageEx(void* context, const char* certId, int, int, const unsigned char* data,
                      int dataLen, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) {
        return SignFrom(service, TwoStep::kSignMessage, certId, In(data, dataLen),
                        &CertService::SignMessage, out, outLen);
    });
}

int SOF_SignHashMessage(void* context, const char* certId, int, int algorithm,
                        const unsigned char* hash, int hashLen, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In input(hash, hashLen);
        if (!certId || !input.Given() || !outLen) return kServiceBadArgument;
        CertService::ToSign toSign;
        const int code = service.PrepareDigest(certId, algorithm, input.bytes, toSign);
        if (code) return code;
        const auto sign = [&](std::string& result) {
            return service.SignMessage(certId, toSign, result);
        };
        return service.Pending().Serve(TwoStep::kSignHash, SigningArguments(certId, toSign), sign,
                                       out, outLen);
    });
}

int SOF_HashData(void* context, int algorithm, const unsigned char* data, int dataLen,
                 const unsigned char* cert, int certLen, const char* userId, int userIdLen,
                 unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In input(data, dataLen);
        const In certificate(cert, certLen);
        const In id(userId, userIdLen);
        if (!input.valid || !certificate.valid || !id.valid) return kServiceBadArgument;
        const auto hash = [&](std::string& result) {
            return service.HashData(algorithm, input.bytes, certificate.bytes, id.bytes, result);
        };
        return HandOutFrom(hash, out, outLen);
    });
}

int SOF_HashFile(void* context, int algorithm, const char* filePath, const unsigned char* cert,
                 int certLen, const char* userId, int userIdLen, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In certificate(cert, certLen);
        const In id(userId, userIdLen);
        if (!filePath || !certificate.valid || !id.valid) return kServiceBadArgument;
        const auto hash = [&](std::string& result) {
            return service.HashFile(algorithm, filePath, certificate.bytes, id.bytes, result);
        };
        return HandOutFrom(hash, out, outLen);
    });
}

int SOF_VerifySignedData(void* context, const unsigned char* cert, int certLen,
                         const unsigned char* data, int dataLen, const unsigned char* signature,
                         int signatureLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In certificate(cert, certLen);
        const In input(data, dataLen);
        const In value(signature, signatureLen);
        if (!certificate.Given() || !input.valid || !value.Given()) return kServiceBadArgument;
        return service.VerifyData(certificate.bytes, input.bytes, value.bytes);
    });
}

int SOF_VerifySignedMessage(void* context, const unsigned char* signature, int signatureLen,
                            const unsigned char* data, int dataLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In message(signature, signatureLen);
        const In input(data, dataLen);
        if (!message.Given() || !input.valid) return kServiceBadArgument;
        return service.VerifyMessage(message.bytes, input.bytes);
    });
}

int SOF_VerifySignedHashMessage(void* context, const unsigned char* signature, int signatureLen,
                                const unsigned char* hash, int hashLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In message(signature, signatureLen);
        const In digest(hash, hashLen);
        if (!message.Given() || !digest.Given()) return kServiceBadArgument;
        return service.VerifyMessageDigest(message.bytes, digest.bytes);
    });
}

int SOF_GetInfoFromSignedMessage(void* context, const unsigned char* signedMessage,
                                 int signedMessageLen, int field, unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In message(signedMessage, signedMessageLen);
        if (!message.Given()) return kServiceBadArgument;
        const auto read = [&](std::string& value) {
            return service.MessageField(message.bytes, field, value);
        };
        return HandOutFrom(read, out, outLen);
    });
}

int SOF_GetCertInfo(void* context, const unsigned char* cert, int certLen, int field,
                    unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In certificate(cert, certLen);
        if (!certificate.Given()) return kServiceBadArgument;
        const auto read = [&](std::string& text) {
            return service.CertificateField(certificate.bytes, field, text);
        };
        return HandOutFrom(read, out, outLen);
    });
}

int SOF_GetCertInfoByOid(void* context, const unsigned char* cert, int certLen, const char* oid,
                         unsigned char* out, int* outLen) {
    return WithContext(context, [&](CertService& service) -> int {
        const In certificate(cert, certLen);
        if (!certificate.Given() || !oid) return kServiceBadArgument;
        const auto read = [&](std::string& der) {
            return service.CertificateExtension(certificate.bytes, oid, der);
        };
        return HandOutFrom(read, out, outLen);
    });
}

// The library takes every number but the verdicts for an acceptable certificate: what can't be
// judged, for whatever cause, has to be one of them.
int SOF_ValidateCert(void* context, const unsigned char* cert, int certLen) {
    const int code = WithContext(context, [&](CertService& service) -> int {
        const In certificate(cert, certLen);
        if (!certificate.Given()) return kServiceBadArgument;
        return service.Validate(certificate.bytes, std::time(nullptr));
    });
    return code > 0 ? kCertificateUntrusted : code;
}

int SetUserConfig(void* context, int number, const char* text) {
    return WithContext(context, [&](CertService& service) -> int {
        if (!text) return kServiceBadArgument;
        if (number != kRevocationListSetting) return kServiceNotSupported;
        return service.SetRevocationList(text);
    });
}

int SOF_Base64Encode(void* context, const unsigned char* data, int dataLen, unsigned char* out,
                     int* outLen) {
    return WithContext(context, [&](CertService&) -> int {
        const In input(data, dataLen);
        if (!input.valid) return kServiceBadArgument;
        const auto encode = [&](std::string& text) {
            text = Base64Encode(input.bytes);
            return kServiceOk;
        };
        return HandOutFrom(encode, out, outLen);
    });
}

int SOF_Base64Decode(void* context, const unsigned char* text, int textLen, unsigned char* out,
                     int* outLen) {
    return WithContext(context, [&](CertService&) -> int {
        const In input(text, textLen);
        if (!input.valid) return kServiceBadArgument;
        const auto decode = [&](std::string& data) {
            return DecodeBase64Text(input.bytes, data) ? kServiceOk : kServiceBadArgument;
        };
        return HandOutFrom(decode, out, outLen);
    });
}
