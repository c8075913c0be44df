#include "SealStatus.h"

#include "Failure.h"
#include "ResultText.h"
#include "Terminal.h"
#include "TwoStep.h"
#include "foundation/Registry.h"
#include "foundation/SealSettings.h"
#include "platform/closed/SealLibrary.h"

namespace {

// The two fields of a seal that its status belongs to.
struct StatusFields {
    std::string field1;
    std::string field5;
};

unsigned char* RoomOf(std::string& text) {
    return text.empty() ? nullptr : reinterpret_cast<unsigned char*>(text.data());
}

int Read(const SealFile& seal, StatusFields& fields, int& size1, int& size5) {
    int ignored = 0;
    return TVK_GetSealInfo(Bytes(seal.content), static_cast<int>(seal.content.size()),
                           RoomOf(fields.field1), &size1, nullptr, &ignored, nullptr, &ignored,
                           nullptr, &ignored, RoomOf(fields.field5), &size5, nullptr, &ignored,
                           nullptr, &ignored, nullptr, &ignored, nullptr, &ignored, nullptr,
                           &ignored, nullptr, &ignored);
}

int ReadFields(const SealFile& seal, StatusFields& fields) {
    int size1 = 0;
    int size5 = 0;
    if (const int code = Read(seal, fields, size1, size5)) return code;
    if (size1 <= 0 || size5 <= 0) return 0;
    fields.field1.resize(static_cast<std::size_t>(size1));
    fields.field5.resize(static_cast<std::size_t>(size5));
    if (const int code = Read(seal, fields, size1, size5)) return code;
    fields.field1.resize(static_cast<std::size_t>(size1));
    fields.field5.resize(static_cast<std::size_t>(size5));
    return 0;
}

void Check(const SealFile& seal, int code) {
    if (code == 0) return;
    throw Failure{ExitCodeFor(code), "The seal \"" + seal.name + "\" can't be used.", code,
                  ResultHint(code)};
}

}  // namespace

void CheckSealStatus(const SealFile& seal) {
    if (seal.kind != SealFileKind::kGb || ReadNumberSetting("ReqEsealStatus") != kRequestStatus) {
        return;
    }
    StatusFields fields;
    Check(seal, ReadFields(seal, fields));
    if (fields.field1.empty() || fields.field5.empty()) {
        throw Failure{ExitCode::kFailed,
                      "The seal \"" + seal.name + "\" tells too little to ask for its status."};
    }
    const Progress progress("Waiting for the seal status service");
    Check(seal, TVK_Request_Eseal_Status(
                    Bytes(fields.field1), static_cast<int>(fields.field1.size()),
                    Bytes(fields.field5), static_cast<int>(fields.field5.size()), 0, 0));
}
