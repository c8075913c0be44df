#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "TesmarkOpt.h"
#include "bridge/AppOpt.h"
#include "foundation/Logger.h"
#include "foundation/StringFailure.h"
#include "foundation/Text.h"
#include "platform/Automation.h"
#include "platform/Module.h"
#include "platform/TimeStampRequest.h"
#include "platform/closed/TimeStampEngine.h"

namespace {

constexpr platform::AutomationId kEngineInterface{
    0x5A0E71C3, 0x3B28, 0x46D9, {0x8E, 0x4F, 0x12, 0xC9, 0xD6, 0xF4, 0x7A, 0x30}};
constexpr char kCreateTS[] = "CreateTS";
// Anything shorter is plain data.
constexpr int kShortestSignature = 11;
constexpr int kSignatureValueField = 3;
constexpr int kSha256Number = 4;
constexpr int kRequestFlag = 1;
// What the service also calls a success.
constexpr int kStampedToo = 1;
constexpr int kChunk = 1024;

using Engine =
    std::unique_ptr<platform::AutomationObjectState, decltype(&platform::ReleaseAutomationObject)>;

// Zeroed memory of a stated size. A service may tell a length that it doesn't hold.
template <int kCapacity>
struct Room {
    int Held() const { return std::clamp(length, 0, kCapacity); }

    unsigned char bytes[kCapacity] = {};
    int length = kCapacity;
};

using Hash = Room<64>;
using SignatureValue = Room<512>;
using Request = Room<512>;

// Null with a record of the step that failed.
platform::AutomationObject CreateEngine() {
    platform::AutomationId classId{};
    if (!platform::ParseClassId(kTimeStampEngineClass, classId)) {
        TESMARK_LOG(kLogError, "CLSIDFromString: %s", "error");
        return nullptr;
    }
    // The class's text once more, for a value that nobody needs.
    platform::AutomationId unused{};
    if (!platform::ParseInterfaceId(kTimeStampEngineClass, unused)) {
        TESMARK_LOG(kLogError, "IIDFromString: %s", "error");
        return nullptr;
    }
    const platform::AutomationObject engine =
        platform::CreateAutomationObject(classId, kEngineInterface, kCreateTS);
    if (engine == nullptr) TESMARK_LOG(kLogError, "pVelmoraTSEngine: %s", "is null");
    return engine;
}

// The hash of plain data, or of the value of a signature. Whether it could be made isn't looked at:
// a failed one is zero bytes of the room's size.
bool HashForStamp(CAppOpt& appOpt, const unsigned char* signedData, int signedLen, Hash& hash) {
    if (signedLen < kShortestSignature) {
        appOpt.HashData("SHA256", signedData, signedLen, nullptr, 0, hash.bytes, &hash.length);
        return true;
    }
    SignatureValue value;
    const int result = appOpt.kvl->SOF_GetInfoFromSignedMessage(
        appOpt.context, signedData, signedLen, kSignatureValueField, value.bytes, &value.length);
    if (result != 0) {
        TESMARK_LOG(kLogTrace, "SOF_GetInfoFromSignedMessage error:%d", result);
        return false;
    }
    appOpt.HashData("SHA256", value.bytes, value.Held(), nullptr, 0, hash.bytes, &hash.length);
    return true;
}

bool MakeRequest(const CAppOpt& appOpt, const Hash& hash, Request& request) {
    const int result =
        appOpt.kvl->SOF_TSGenREQ(appOpt.context, hash.bytes, hash.Held(), kSha256Number,
                                 kRequestFlag, 0, 0, 0, 0, 0, request.bytes, &request.length);
    if (result == 0) return true;
    TESMARK_LOG(kLogTrace, "SOF_TSGenREQ error:%d", result);
    return false;
}

// The response's bytes; nothing for a null one. A failed call is the string type's failure with
// its status, which passes through to the host.
std::optional<std::string> AskEngine(const Engine& engine, const Request& request) {
    const std::string text =
        Base64EncodeBytes(request.bytes, static_cast<unsigned int>(request.Held()));
    const platform::AutomationResult answer =
        platform::CallAutomation(engine.get(), kCreateTS, {text.c_str()});
    if (answer.failure != platform::AutomationFailure::None) {
        throw StringFailure(static_cast<std::uint32_t>(answer.status));
    }
    if (answer.text) return Base64Decode(*answer.text);
    TESMARK_LOG(kLogError, "CreateTS: %s", "return null");
    return std::nullopt;
}

int FailedWrite(std::size_t written) {
    TESMARK_LOG(kLogError, "[WriteContent2File]:fwrite data len:%d", static_cast<int>(written));
    return TESMARK_COPY_NOT_WRITTEN;
}

int WriteInChunks(const unsigned char* data, int dataLen, std::FILE* file) {
    for (int done = 0; done < dataLen;) {
        const auto chunk = static_cast<std::size_t>(std::min(dataLen - done, kChunk));
        const std::size_t written = std::fwrite(data + done, 1, chunk, file);
        if (written != chunk) return FailedWrite(written);
        done += static_cast<int>(chunk);
    }
    return 0;
}

}  // namespace

// COM is left only by the way through the last call: every other one leaves the thread's count
// raised by one, and hosts of this library live with it.
int CAppOpt::SignTimeStamp(const unsigned char* signedData, int signedLen, unsigned char* out,
                           int* outLen) {
    TESMARK_LOG(kLogTrace, "[SignTimeStamp]: %s", "begin");
    platform::InitializeAutomation();
    Engine engine(CreateEngine(), &platform::ReleaseAutomationObject);
    if (!engine) return TESMARK_TIME_STAMP_FAILED;
    Hash hash;
    if (!HashForStamp(*this, signedData, signedLen, hash)) return TESMARK_TIME_STAMP_FAILED;
    Request request;
    if (!MakeRequest(*this, hash, request)) return TESMARK_TIME_STAMP_FAILED;
    WriteContent2File("req.dat", request.bytes, request.Held());
    const std::optional<std::string> response = AskEngine(engine, request);
    if (!response) return TESMARK_TIME_STAMP_FAILED;
    int length = *outLen;
    const int result = kvl->SOF_TSGenPDFSignature(
        context, reinterpret_cast<const unsigned char*>(response->data()),
        static_cast<int>(response->size()), signedData, signedLen, out, &length);
    *outLen = length;
    // The engine is let go after COM.
    platform::UninitializeAutomation();
    return result == kStampedToo ? 0 : result;
}

int CAppOpt::WriteContent2File(const char*, const unsigned char* data, int dataLen) {
    const char* const path = platform::TimeStampRequestPath();
    TESMARK_LOG(kLogTrace, "[WriteContent2File]:filename,%s;outputlen,%d", path, dataLen);
    std::FILE* const file = std::fopen(path, "wb");
    if (file == nullptr) {
        TESMARK_LOG(kLogError, "[WriteContent2File]:fopen error:%d", platform::LastError());
        return TESMARK_COPY_NOT_OPENED;
    }
    if (const int code = WriteInChunks(data, dataLen, file)) {
        std::fclose(file);
        return code;
    }
    if (std::fclose(file) != 0) {
        TESMARK_LOG(kLogError, "[WriteContent2File]:fclose file");
        return TESMARK_COPY_NOT_CLOSED;
    }
    TESMARK_LOG(kLogTrace, "[WriteContent2File]: %s", "ok");
    return 0;
}

int CAppOpt::VerifyTimeStamp(const unsigned char* signature, int signatureLen) {
    TESMARK_LOG(kLogTrace, "[VerifyTimeStamp]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    return kvl->SOF_TSVerifyPDFSignature(context, signature, signatureLen);
}

int CAppOpt::GetFieldDataFromTSSignatureInfo(const unsigned char* signature, int signatureLen,
                                             int field, unsigned char* out, int* outLen) {
    TESMARK_LOG(kLogTrace, "[GetFieldDataFromTSSignatureInfo]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    return kvl->SOF_TSGetPDFSignatureInfo(context, signature, signatureLen, field, out, outLen);
}
