#include "session/ScanFiles.h"

#include <string_view>

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"
#include "host/ModuleState.h"
#include "seal/EsHeader.h"
#include "seal/EsealBase.h"
#include "seal/KeyLists.h"

namespace {

constexpr int kNoSize = -1;
constexpr int kNotRead = -2;

// A seal in the making: its buffers are freed unless the list takes them over.
struct Draft {
    SealRecord record;
    CBuffer file;
    CBuffer picture;
    bool keepsFile = false;
};

// What became of one file, for the status and for what comes next.
enum class Outcome { Read, Skipped, Refused };

int ReadFile(const char* name, const char* certId, CBuffer& file) {
    int size = 0;
    if (g_appOpt.ReadKeyFile(name, certId, nullptr, &size) != 0) return kNoSize;
    CBuffer bytes = AllocateAnswer(size, 1);
    const auto read = [&](unsigned char* out, int* outLen) {
        return g_appOpt.ReadKeyFile(name, certId, out, outLen);
    };
    if (!bytes || FetchAnswer(read, bytes, 1) != 0) return kNotRead;
    file = std::move(bytes);
    return 0;
}

Outcome TakePicture(std::string_view picture, Draft& draft, int& status) {
    draft.picture = AllocateAnswer(static_cast<int>(picture.size()), 1);
    if (!draft.picture) {
        status = TESMARK_NO_MEMORY;
        return Outcome::Skipped;
    }
    picture.copy(draft.picture.Text(), picture.size());
    draft.record.picWidth = -1;
    draft.record.picHeight = -1;
    return Outcome::Read;
}

// The picture alone is kept of either, so that no seal file goes into the selection.
Outcome ReadEsFile(Draft& draft, int& status) {
    const auto header = ReadEsHeader(draft.file.View());
    if (!header) return Outcome::Refused;
    draft.record.name = header->name;
    return TakePicture(header->picture, draft, status);
}

// A failed question for the length leaves the status as it is; hosts know it so.
Outcome ReadNationalFile(Draft& draft, int& status) {
    draft.record.type = SealTypeGM;
    CEsealGM seal(draft.file.Data(), draft.file.Length());
    int length = 0;
    if (const int code = seal.PraseEseal(nullptr, &length)) {
        TESMARK_LOG(kLogError, "PraseEseal error:%d", code);
        return Outcome::Skipped;
    }
    draft.picture = AllocateAnswer(length, 1);
    status = draft.picture ? seal.PraseEseal(draft.picture.Data(), &length) : TESMARK_NO_MEMORY;
    if (status != 0) return Outcome::Skipped;
    draft.record.picWidth = seal.m_picWidth;
    draft.record.picHeight = seal.m_picHeight;
    draft.keepsFile = true;
    return Outcome::Read;
}

// The first part that the name holds decides. "GBESEAL" holds "ESEAL" and is read as the old
// format.
Outcome ReadByName(const std::string& name, Draft& draft, int& status) {
    const auto holds = [&](const char* part) { return name.find(part) != std::string::npos; };
    if (holds("ESEAL")) return ReadEsFile(draft, status);
    if (holds("HLVQSEAL")) return TakePicture(draft.file.View(), draft, status);
    if (holds("SEAL01")) return ReadNationalFile(draft, status);
    return Outcome::Read;
}

// From here on the buffers belong to the list.
void HandOver(Draft& draft) {
    SealRecord& record = g_pzmSealItems.emplace_back(std::move(draft.record));
    record.picLen = draft.picture.Length();
    record.picData = draft.picture.Release();
    if (!draft.keepsFile) return;
    record.sealDataLen = draft.file.Length();
    record.sealData = draft.file.Release();
}

}  // namespace

int praseEnumPZMFiles(const std::string& list, std::vector<std::string>& files) {
    TESMARK_LOG_SCOPE("praseEnumPZMFiles");
    return ReadFileList(list, files) ? 1 : 0;
}

int GetPZMEsealList(const std::vector<std::string>& files, const char* certId) {
    TESMARK_LOG_SCOPE("GetPZMEsealList");
    int status = 0;
    for (const std::string& name : files) {
        Draft draft;
        draft.record.name = name;
        status = ReadFile(name.c_str(), certId, draft.file);
        if (status != 0) continue;
        switch (ReadByName(name, draft, status)) {
            case Outcome::Read: HandOver(draft); break;
            case Outcome::Skipped: break;
            case Outcome::Refused: return TESMARK_NOT_AN_ES_FILE;
        }
    }
    return status;
}
