#include <cstring>
#include <string>
#include <string_view>

#include "TesmarkOpt.h"
#include "bridge/AppOpt.h"
#include "bridge/TwoStep.h"
#include "bridge/UserList.h"
#include "foundation/Logger.h"
#include "foundation/ServicePath.h"
#include "platform/Files.h"

namespace {

constexpr int kAllDevices = 1;
constexpr int kDeviceKind = 7;
constexpr int kDeviceKindCapacity = 32;
constexpr char kHardDevice[] = "HARD";

int CountDevices(const CAppOpt& appOpt) {
    int count = 0;
    if (const int result = appOpt.kvl->GetDeviceCountEx(appOpt.context, kAllDevices, &count)) {
        TESMARK_LOG(kLogError, "[GetUserList]GetDeviceCountEx: %s,error:%d", "failed", result);
        return TESMARK_DEVICE_COUNT_FAILED;
    }
    if (count != 0) return 0;
    TESMARK_LOG(kLogError, "[GetUserList]not exist key.");
    return TESMARK_NO_KEY;
}

int NoCertInKey() {
    TESMARK_LOG(kLogError, "[GetUserList]not exist cert in key.");
    return TESMARK_NO_CERT;
}

// 0 if the answer to the question for the user list has something in it.
int JudgeUserList(int result, int size) {
    if (result == 0) return size == 0 ? NoCertInKey() : 0;
    TESMARK_LOG(kLogError, "[GetUserList]SOF_GetUserList: %s,error:%d", "failed", result);
    return TESMARK_CERT_LIST_FAILED;
}

int FetchUserList(const CAppOpt& appOpt, CBuffer& list) {
    int size = 0;
    int result = appOpt.kvl->SOF_GetUserList(appOpt.context, nullptr, &size);
    if (const int code = JudgeUserList(result, size)) return code;
    list = AllocateAnswer(size, 1);
    if (!list) {
        TESMARK_LOG(kLogError, "malloc szUserList error");
        return TESMARK_NO_MEMORY;
    }
    result = FetchAnswer(
        [&](unsigned char* out, int* outLen) {
            return appOpt.kvl->SOF_GetUserList(appOpt.context, out, outLen);
        },
        list, 0);
    TESMARK_LOG(kLogError, "[GetUserList]SOF_GetUserList: %s", list.Text());
    return JudgeUserList(result, list.Length());
}

int QueryDeviceKind(const CAppOpt& appOpt, const std::string& certId, std::string& kind) {
    unsigned char buffer[kDeviceKindCapacity + 1] = {};
    int length = kDeviceKindCapacity;
    const int result =
        appOpt.kvl->GetDeviceInfo(appOpt.context, certId.c_str(), kDeviceKind, buffer, &length);
    kind = reinterpret_cast<const char*>(buffer);
    if (result == 0 && length != 0) return 0;
    TESMARK_LOG(kLogError, "[GetUserList]GetDeviceInfo: %s,error:%d", "failed", result);
    return TESMARK_CERT_LIST_FAILED;
}

// Asks the file itself, in a load of its own, whether it has the function: an older service
// hasn't. `found` is false where the file can't be asked.
int AskForLastLoginCall(bool& found) {
    found = false;
    const std::string path = get_kvl_path();
    if (!platform::PathExists(path.c_str())) {
        TESMARK_LOG(kLogError, "[GetLastLoginCertID]get_kvl_path: error:%d", platform::LastError());
        return 0;
    }
    const platform::ModuleHandle module = platform::LoadModule(path.c_str());
    if (module == nullptr) {
        TESMARK_LOG(kLogError, "[GetLastLoginCertID]LoadLibrary: failed, error:%d",
                    platform::LastError());
        return 0;
    }
    found = platform::FindSymbol(module, "SOF_GetLastLoginCertID") != nullptr;
    const int error = platform::LastError();
    platform::FreeModule(module);
    if (found) return 0;
    TESMARK_LOG(kLogError, "SOF_GetLastLoginCertID: not exist, error:%d", error);
    return TESMARK_NO_LAST_LOGIN_CALL;
}

int NoLastLogin() {
    TESMARK_LOG(kLogError, "[GetLastLoginCertID]not exist cert in key.");
    return TESMARK_NO_LAST_LOGIN;
}

}  // namespace

int CAppOpt::GetUserList(CBuffer& list) {
    TESMARK_LOG(kLogTrace, "[GetUserList]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    if (const int code = CountDevices(*this)) return code;
    CBuffer all;
    if (const int code = FetchUserList(*this, all)) return code;
    std::string hard;
    std::string_view rest = all.Text();
    while (const auto entry = TakeEntry(rest)) {
        std::string kind;
        if (const int code = QueryDeviceKind(*this, entry->certId, kind)) return code;
        if (kind == kHardDevice) AppendEntry(*entry, hard);
    }
    if (hard.empty()) return NoCertInKey();
    std::memcpy(all.Data(), hard.c_str(), hard.size() + 1);
    *all.LengthPointer() = static_cast<int>(hard.size());
    list = std::move(all);
    return 0;
}

int CAppOpt::GetLastLoginCertID(const char* certId, CBuffer& found) {
    TESMARK_LOG(kLogTrace, "[GetLastLoginCertID]: %s", "begin");
    if (CheckKVLOKStatus() != 0) return TESMARK_SERVICE_DOWN;
    TESMARK_LOG(kLogTrace, "GetLastLoginCertID begin");
    bool canAsk = false;
    if (const int code = AskForLastLoginCall(canAsk); !canAsk) return code;
    const auto ask = [&](unsigned char* out, int* outLen) {
        return kvl->SOF_GetLastLoginCertID(context, certId, out, outLen);
    };
    int size = 0;
    if (const int result = ask(nullptr, &size)) {
        TESMARK_LOG(kLogError, "[GetCertID]SOF_GetLastLoginCertID: %s,error:%d", "failed", result);
        return TESMARK_LAST_LOGIN_FAILED;
    }
    if (size == 0) return NoLastLogin();
    CBuffer answer = AllocateAnswer(size, 1);
    if (!answer) {
        TESMARK_LOG(kLogError, "malloc szLastLoginCertID error");
        return TESMARK_LAST_LOGIN_NO_MEMORY;
    }
    if (const int result = FetchAnswer(ask, answer, 0)) {
        TESMARK_LOG(kLogError, "[GetLastLoginCertID]SOF_GetLastLoginCertID: %s,error:%d", "failed",
                    result);
        return TESMARK_LAST_LOGIN_FAILED;
    }
    if (answer.Length() == 0) return NoLastLogin();
    found = std::move(answer);
    TESMARK_LOG(kLogTrace, "[GetLastLoginCertID]: %s", "ok");
    return 0;
}

int CAppOpt::ReadKeyFile(const char* fileName, const char* certId, unsigned char* out,
                         int* outLen) {
    TESMARK_LOG(kLogTrace, "[ReadKeyFile]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    const int result = kvl->SOF_ReadFile(context, certId, fileName, out, outLen);
    if (result == 0) return 0;
    TESMARK_LOG(kLogError, "[ReadKeyFile]SOF_ReadFile: error:%d", result);
    return TESMARK_KEY_FILE_FAILED;
}

int CAppOpt::EnumFilesInKey(const char* certId, unsigned char* out, int* outLen) {
    TESMARK_LOG(kLogTrace, "[EnumFilesInKey]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    return kvl->EnumFilesInDevice(context, certId, out, outLen);
}

int CAppOpt::LoginIn(const char* certId, const char* pin) {
    TESMARK_LOG(kLogTrace, "[LoginIn]: %s", "begin");
    if (const int code = CheckKVLOKStatus()) return code;
    return kvl->SOF_Login(context, certId, pin);
}

// The records of the log bear LoginIn's name.
int CAppOpt::Logout(const char* certId) {
    TESMARK_LOG(kLogTrace, "[LoginIn]: %s", "begin");
    if (CheckKVLOKStatus() != 0) return TESMARK_SERVICE_DOWN;
    const int result = kvl->SOF_Logout(context, certId);
    TESMARK_LOG(kLogTrace, "[LoginIn]: %s", "end");
    return result;
}
