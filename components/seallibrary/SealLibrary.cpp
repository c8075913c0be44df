#include "platform/closed/SealLibrary.h"

#include <cstring>
#include <ctime>
#include <exception>
#include <map>
#include <mutex>
#include <thread>

#include "components/crypto/ErrorMark.h"
#include "components/seallibrary/DataDigest.h"
#include "components/seallibrary/RevocationTime.h"
#include "components/seallibrary/Seal.h"
#include "components/seallibrary/SealCodes.h"
#include "components/seallibrary/SealInfo.h"
#include "components/seallibrary/SealLimits.h"
#include "components/seallibrary/SealSignature.h"
#include "components/seallibrary/SealSigning.h"
#include "components/seallibrary/SealStatus.h"
#include "components/seallibrary/SealTime.h"
#include "components/seallibrary/SealVerdict.h"
#include "components/seallibrary/ServiceLink.h"
#include "foundation/Logger.h"
#include "foundation/Text.h"

namespace {

struct Library {
    CServiceLink service;
    CSealSigning signing{service};
    CCertificateShelf shelf;
    // Those that wait for the next verification of the thread that handed them in.
    std::map<std::thread::id, std::string> revocationLists;
    std::string statusService;  // its address
};

std::mutex g_mutex;

// Made at the first need. Only TVK_Release takes it away, no destructor at the end of the process:
// a host may call in until its very end.
Library* g_library = nullptr;

Library& State() {
    if (!g_library) g_library = new Library;
    return *g_library;
}

// What every export stands in: nothing is thrown into the caller, and nothing left behind in the
// error queue that a host's own OpenSSL calls read.
template <typename Step>
int Guarded(Step step) noexcept {
    const ErrorMark mark;
    try {
        return step();
    } catch (const std::exception&) {
        return kSealNoMemory;
    }
}

// The same, with no other call at the same time.
template <typename Step>
int Alone(Step step) noexcept {
    return Guarded([&]() -> int {
        const std::lock_guard<std::mutex> lock(g_mutex);
        return step();
    });
}

// Another verification may be of another issuer's signer, so a list counts for one.
std::string TakeRevocationList() {
    const auto node = State().revocationLists.extract(std::this_thread::get_id());
    return node ? std::move(node.mapped()) : std::string();
}

bool View(const unsigned char* data, int length, std::string_view& view) {
    if (length < 0 || (!data && length > 0)) return false;
    view = {reinterpret_cast<const char*>(data), static_cast<std::size_t>(length)};
    return true;
}

int CopyOut(std::string_view bytes, unsigned char* out, int* outLen) {
    if (!outLen) return kSealBadArgument;
    const int capacity = *outLen;
    *outLen = static_cast<int>(bytes.size());
    if (!out) return kSealOk;
    if (capacity < *outLen) return kSealBufferTooSmall;
    std::memcpy(out, bytes.data(), bytes.size());
    return kSealOk;
}

int ReadSealArgument(const unsigned char* data, int length, Seal& seal) {
    std::string_view der;
    if (!View(data, length, der) || der.empty()) return kSealBadArgument;
    return ReadSeal(der, seal);
}

int Result(const char* operation, const SealVerdict& verdict) {
    if (verdict.code)
        TESMARK_LOG(kLogError, "[%s]: %s, error:0x%X", operation, StepText(verdict.failed),
                    static_cast<unsigned int>(verdict.code));
    return verdict.code;
}

// Locked for no longer than this: nobody else is to wait while the service is asked.
std::string StatusService() {
    const std::lock_guard<std::mutex> lock(g_mutex);
    return State().statusService;
}

struct InfoField {
    unsigned char* out;
    int* outLen;
};

// Several fields may share one length where no bytes are asked for, so all capacities are read
// before any length is written, and those of the fields with a buffer are written last.
int CopyOutFields(const std::array<std::string, kSealInfoFields>& values,
                  const InfoField (&fields)[kSealInfoFields]) {
    int code = kSealOk;
    for (std::size_t i = 0; i < kSealInfoFields; ++i) {
        if (!fields[i].out) continue;
        if (!fields[i].outLen) return kSealBadArgument;
        if (*fields[i].outLen < static_cast<int>(values[i].size())) code = kSealBufferTooSmall;
    }
    for (const bool withBuffer : {false, true})
        for (std::size_t i = 0; i < kSealInfoFields; ++i) {
            if (!fields[i].outLen || withBuffer != (fields[i].out != nullptr)) continue;
            *fields[i].outLen = static_cast<int>(values[i].size());
            if (withBuffer && code == kSealOk)
                std::memcpy(fields[i].out, values[i].data(), values[i].size());
        }
    return code;
}

}  // namespace

int TVK_Initialize(void) { return kSealOk; }

int TVK_Release(void) {
    return Alone([&]() -> int {
        delete g_library;
        g_library = nullptr;
        return kSealOk;
    });
}

// Whether the status is asked for is the caller's decision, call by call.
int TVK_SetConfig(int, const char* url, int urlLen, int signWithTimeStamp) {
    return Alone([&]() -> int {
        std::string_view address;
        if (!View(reinterpret_cast<const unsigned char*>(url), urlLen, address))
            return kSealBadArgument;
        State().statusService = address.substr(0, address.find('\0'));
        return signWithTimeStamp ? kSealNotSupported : kSealOk;
    });
}

int TVK_SetConfigEx(int kind, const unsigned char* data, int dataLen) {
    return Alone([&]() -> int {
        constexpr int kRevocationList = 3;
        std::string_view list;
        if (kind != kRevocationList) return kSealNotSupported;
        if (!View(data, dataLen, list)) return kSealBadArgument;
        TakeRevocationList();
        if (list.empty()) return kSealOk;
        std::string der = ReadRevocationList(list);
        if (der.empty()) return kSealRevocationListDamaged;
        State().revocationLists[std::this_thread::get_id()] = std::move(der);
        return kSealOk;
    });
}

int TVK_Sign(const unsigned char* certId, int certIdLen, const unsigned char* property,
             int propertyLen, const unsigned char* oid, int oidLen, const unsigned char* hash,
             int hashLen, const unsigned char* time, int timeLen, const unsigned char* seal,
             int sealLen, unsigned char* out, int* outLen) {
    return Alone([&]() -> int {
        SealSignRequest request;
        if (!View(certId, certIdLen, request.certId) ||
            !View(property, propertyLen, request.property) ||
            !View(oid, oidLen, request.algorithm) || !View(hash, hashLen, request.hash) ||
            !View(time, timeLen, request.time) || !View(seal, sealLen, request.seal) || !outLen)
            return kSealBadArgument;
        CSealSigning& signing = State().signing;
        int code = signing.Obtain(request);
        if (code == kSealOk) code = CopyOut(signing.Signature(), out, outLen);
        if (code == kSealOk && out) signing.Forget();
        if (code) TESMARK_LOG(kLogError, "[TVK_Sign]: error:0x%X", static_cast<unsigned int>(code));
        return code;
    });
}

int TVK_Verify_SES_Sign(const unsigned char* signature, int signatureLen,
                        const unsigned char* dataBase64, int dataBase64Len) {
    return Alone([&]() -> int {
        const std::string list = TakeRevocationList();
        std::string_view der;
        std::string_view text;
        if (!View(signature, signatureLen, der) || !View(dataBase64, dataBase64Len, text))
            return kSealBadArgument;
        const std::string data = Base64Decode(text);
        return Result("TVK_Verify_SES_Sign", JudgeSealSignature(der, DigestOfData(data), list,
                                                                State().service, &State().shelf));
    });
}

int TVK_Verify_SES_Sign_BigFile(const unsigned char* signature, int signatureLen,
                                const char* filePath) {
    return Alone([&]() -> int {
        const std::string list = TakeRevocationList();
        std::string_view der;
        if (!View(signature, signatureLen, der) || !filePath) return kSealBadArgument;
        return Result(
            "TVK_Verify_SES_Sign_BigFile",
            JudgeSealSignature(der, DigestOfFile(filePath), list, State().service, &State().shelf));
    });
}

int TVK_Get_Sign_Cert_From_SIG(const unsigned char* signatureBase64, int signatureBase64Len,
                               unsigned char* out, int* outLen) {
    return Alone([&]() -> int {
        std::string_view text;
        if (!View(signatureBase64, signatureBase64Len, text)) return kSealBadArgument;
        SealSignature signature;
        if (const int code = ReadSealSignature(Base64Decode(text), signature)) return code;
        return CopyOut(Base64Encode(signature.signerCertificate), out, outLen);
    });
}

int TVK_Check_CRL_Time(const unsigned char* crl, int crlLen, const unsigned char* serial,
                       int serialLen, const unsigned char* time, int timeLen) {
    return Alone([&]() -> int {
        std::string_view list;
        std::string_view number;
        std::string_view moment;
        if (!View(crl, crlLen, list) || !View(serial, serialLen, number) ||
            !View(time, timeLen, moment))
            return kSealBadArgument;
        while (moment.ends_with('\0')) moment.remove_suffix(1);
        const auto seconds = ReadHostTime(moment);
        return seconds ? CheckRevocationTime(list, number, *seconds) : kSealBadArgument;
    });
}

int TVK_Verify_SESeal(const unsigned char* seal, int sealLen) {
    return Alone([&]() -> int {
        std::string_view der;
        if (!View(seal, sealLen, der) || der.empty()) return kSealBadArgument;
        return Result("TVK_Verify_SESeal",
                      JudgeSeal(der, std::time(nullptr), State().service, &State().shelf));
    });
}

int TVK_GetSealInfo(const unsigned char* seal, int sealLen, unsigned char* field1, int* field1Len,
                    unsigned char* field2, int* field2Len, unsigned char* field3, int* field3Len,
                    unsigned char* field4, int* field4Len, unsigned char* field5, int* field5Len,
                    unsigned char* field6, int* field6Len, unsigned char* field7, int* field7Len,
                    unsigned char* field8, int* field8Len, unsigned char* field9, int* field9Len,
                    unsigned char* field10, int* field10Len, unsigned char* field11,
                    int* field11Len) {
    return Alone([&]() -> int {
        Seal read;
        if (const int code = ReadSealArgument(seal, sealLen, read)) return code;
        const InfoField fields[kSealInfoFields] = {
            {field1, field1Len}, {field2, field2Len},   {field3, field3Len},  {field4, field4Len},
            {field5, field5Len}, {field6, field6Len},   {field7, field7Len},  {field8, field8Len},
            {field9, field9Len}, {field10, field10Len}, {field11, field11Len}};
        std::string_view der;
        View(seal, sealLen, der);
        return CopyOutFields(SealInfo(read, der), fields);
    });
}

int TVK_Request_Eseal_Status(const unsigned char* field1, int field1Len,
                             const unsigned char* field5, int field5Len, std::uint64_t,
                             std::uint64_t) {
    std::string_view number;
    std::string_view hash;
    if (!View(field1, field1Len, number) || !View(field5, field5Len, hash)) return kSealBadArgument;
    return Guarded([&]() -> int {
        std::string fault;
        const int code = AskSealStatus(StatusService(), number, hash, fault);
        if (code)
            TESMARK_LOG(kLogError, "[TVK_Request_Eseal_Status]: %s, error:0x%X", fault.c_str(),
                        static_cast<unsigned int>(code));
        return code;
    });
}

int TVK_Get_Pic_From_Eseal_Ex(const unsigned char* seal, int sealLen, unsigned char* picture,
                              int* pictureLen, int* width, int* height) {
    return Alone([&]() -> int {
        Seal read;
        if (const int code = ReadSealArgument(seal, sealLen, read)) return code;
        if (width) *width = read.widthMm;
        if (height) *height = read.heightMm;
        return CopyOut(read.picture, picture, pictureLen);
    });
}

int TVK_Get_SealName_From_Eseal(const unsigned char* seal, int sealLen, unsigned char* nameUtf8,
                                int* nameLen) {
    return Alone([&]() -> int {
        Seal read;
        if (const int code = ReadSealArgument(seal, sealLen, read)) return code;
        return CopyOut(read.name, nameUtf8, nameLen);
    });
}
