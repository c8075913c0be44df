#include <string_view>

#include "TesmarkOpt.h"
#include "bridge/TwoStep.h"
#include "foundation/Logger.h"
#include "foundation/Text.h"
#include "seal/CertEsealOpt.h"
#include "seal/EsealBase.h"

namespace {

enum class Reader { GB, Default, GM, Bare, EncodedGB, None };

struct NameRule {
    std::string_view part;
    int type;
    Reader reader;
};

// The first rule whose part the name holds. "GBESEAL" holds "ESEAL", so it stands before it;
// "SSESEAL" holds it too and stands behind it, so that no name gets there, and such files are read
// as the old format. The order is what files in the field are named for.
constexpr NameRule kNameRules[] = {
    {"GBESEAL", SealTypeGB, Reader::GB},        {"ESEAL", SealTypeDefault, Reader::Default},
    {"SEAL01", SealTypeGM, Reader::GM},         {"HLVQSEAL", SealTypeHLVQ, Reader::Bare},
    {"SSESEAL", SealTypeGB, Reader::EncodedGB},
};
constexpr NameRule kNoRule = {"", SealTypeDefault, Reader::None};

const NameRule& RuleFor(std::string_view name) {
    for (const NameRule& rule : kNameRules) {
        if (name.find(rule.part) != std::string_view::npos) return rule;
    }
    return kNoRule;
}

// A seal in the making: its buffers are freed unless the list takes them over.
struct Draft {
    SealRecord record;
    CBuffer file;
    CBuffer picture;
};

int ReadFile(CAppOpt& appOpt, const char* name, const char* certId, CBuffer& file) {
    const auto read = [&](unsigned char* out, int* outLen) {
        return appOpt.ReadKeyFile(name, certId, out, outLen);
    };
    const TwoStepOutcome outcome = FetchInTwoSteps(read, 1, file);
    return outcome.noMemory ? TESMARK_NO_MEMORY : outcome.result;
}

// Asks for the picture twice, first for its length.
int ReadSeal(CEsealBase& seal, Draft& draft) {
    int length = 0;
    if (const int code = seal.PraseEseal(nullptr, &length)) return code;
    draft.picture = AllocateAnswer(length, 1);
    if (!draft.picture) return TESMARK_NO_MEMORY;
    if (const int code = seal.PraseEseal(draft.picture.Data(), &length)) return code;
    draft.record.name = seal.m_sealName;
    draft.record.picWidth = seal.m_picWidth;
    draft.record.picHeight = seal.m_picHeight;
    return 0;
}

template <typename Seal>
int ReadSealAs(Draft& draft) {
    Seal seal(draft.file.Data(), draft.file.Length());
    return ReadSeal(seal, draft);
}

CBuffer CopyOf(std::string_view bytes) {
    CBuffer copy = AllocateAnswer(static_cast<int>(bytes.size()), 1);
    if (copy) bytes.copy(copy.Text(), bytes.size());
    return copy;
}

int TakeBarePicture(const std::string& name, Draft& draft) {
    draft.picture = CopyOf(draft.file.View());
    if (!draft.picture) return TESMARK_NO_MEMORY;
    draft.record.name = name;
    draft.record.picWidth = -1;
    draft.record.picHeight = -1;
    return 0;
}

int ReadEncodedSeal(Draft& draft) {
    TESMARK_LOG(kLogInfo, "[GetEsealList]: is JRT GB seal");
    draft.file = CopyOf(Base64Decode(draft.file.View()));
    if (!draft.file) return TESMARK_NO_MEMORY;
    TESMARK_LOG(kLogInfo, "[GetEsealList]: PraseEseal, begin");
    if (const int code = ReadSealAs<CEsealGB>(draft)) return code;
    TESMARK_LOG(kLogInfo, "[GetEsealList]: pic file length:%d", draft.picture.Length());
    TESMARK_LOG(kLogInfo, "[GetEsealList]: PraseEseal end");
    return 0;
}

int ReadByRule(Reader reader, const std::string& name, Draft& draft) {
    switch (reader) {
        case Reader::GB: return ReadSealAs<CEsealGB>(draft);
        case Reader::Default: return ReadSealAs<CEsealDefalult>(draft);
        case Reader::GM: return ReadSealAs<CEsealGM>(draft);
        case Reader::Bare: return TakeBarePicture(name, draft);
        case Reader::EncodedGB: return ReadEncodedSeal(draft);
        case Reader::None: return 0;
    }
    return 0;
}

// From here on the buffers belong to the list.
void HandOver(Draft& draft, std::vector<SealRecord>& seals) {
    SealRecord& record = seals.emplace_back(draft.record);
    record.sealDataLen = draft.file.Length();
    record.sealData = draft.file.Release();
    record.picLen = draft.picture.Length();
    record.picData = draft.picture.Release();
}

}  // namespace

int CCertEsealOpt::GetEsealList(std::vector<std::string> names, int index, const char* certId) {
    int result = 0;
    const unsigned int clearings = m_clearings;
    for (const std::string& name : names) {
        Draft draft;
        result = ReadFile(*m_appOpt, name.c_str(), certId, draft.file);
        if (result != 0) continue;
        const NameRule& rule = RuleFor(name);
        draft.record.type = rule.type;
        result = ReadByRule(rule.reader, name, draft);
        if (clearings != m_clearings) break;
        if (result != 0) continue;
        HandOver(draft, m_certs[static_cast<std::size_t>(index)].seals);
    }
    return result;
}
