#include "pdf/PdfChanges.h"

#include <algorithm>
#include <map>
#include <qpdf/QPDFXRefEntry.hh>
#include <set>
#include <vector>

#include "pdf/FurtherSignature.h"
#include "pdf/InflateLimit.h"
#include "pdf/PdfReferences.h"
#include "pdf/PlainUpdates.h"

namespace {

// A longer document is told by its bytes alone.
constexpr std::uint64_t kLargestCompared = 512 * 1024 * 1024;

using Table = std::map<QPDFObjGen, QPDFXRefEntry>;

bool OpenRevision(std::string_view bytes, QPDF& revision) {
    revision.setSuppressWarnings(true);
    revision.setAttemptRecovery(false);
    try {
        revision.processMemoryFile("revision", bytes.data(), bytes.size());
        const auto warnings = revision.getWarnings();
        return std::all_of(warnings.begin(), warnings.end(), IsHarmlessOnOpening) &&
               revision.getRoot().isDictionary();
    } catch (const std::exception&) {
        return false;
    }
}

// Where the object, or the stream that holds it, begins; negative if the table doesn't tell.
qpdf_offset_t PlaceOf(const Table& table, const QPDFXRefEntry& entry) {
    if (entry.getType() == 1) return entry.getOffset();
    if (entry.getType() != 2) return -1;
    const auto stream = table.find(QPDFObjGen(entry.getObjStreamNumber(), 0));
    return stream != table.end() && stream->second.getType() == 1 ? stream->second.getOffset() : -1;
}

// Nobody has written that object again.
bool StandsWhereItStood(const Table& before, const QPDFXRefEntry& old, const Table& now,
                        const QPDFXRefEntry& entry) {
    const auto place = PlaceOf(before, old);
    if (place < 0 || place != PlaceOf(now, entry) || old.getType() != entry.getType()) return false;
    return old.getType() == 1 || old.getObjStreamIndex() == entry.getObjStreamIndex();
}

bool SameStream(QPDFObjectHandle one, QPDFObjectHandle other) {
    if (one.getDict().unparseResolved() != other.getDict().unparseResolved()) return false;
    const auto first = one.getRawStreamData();
    const auto second = other.getRawStreamData();
    return first->getSize() == second->getSize() &&
           std::equal(first->getBuffer(), first->getBuffer() + first->getSize(),
                      second->getBuffer());
}

bool Same(QPDFObjectHandle one, QPDFObjectHandle other) {
    if (one.isStream() != other.isStream()) return false;
    if (one.isStream()) return SameStream(one, other);
    return one.unparseResolved() == other.unparseResolved();
}

// Keys of a trailer that tell of its section, of what is said about the document or of its file, or
// that are compared by themselves. LibreOffice writes /DocChecksum.
bool TellsOfSection(const std::string& key) {
    static const std::set<std::string> keys = {
        "/DecodeParms", "/DocChecksum", "/Filter", "/ID",   "/Index", "/Info",   "/Length",
        "/Prev",        "/Root",        "/Size",   "/Type", "/W",     "/XRefStm"};
    return keys.contains(key);
}

std::string FirstIdentifier(QPDFObjectHandle trailer) {
    auto pair = trailer.getKey("/ID");
    return pair.isArray() && pair.getArrayNItems() > 0 ? pair.getArrayItem(0).unparse() : "";
}

// Keys are made of the first identifier too. Of a document that isn't encrypted it means nothing,
// and updates come without it or with another one.
bool SameEncryption(QPDFObjectHandle before, QPDFObjectHandle now) {
    if (before.hasKey("/Encrypt") != now.hasKey("/Encrypt")) return false;
    if (!before.hasKey("/Encrypt")) return true;
    return before.getKey("/Encrypt").unparse() == now.getKey("/Encrypt").unparse() &&
           FirstIdentifier(before) == FirstIdentifier(now);
}

// Another catalog, encryption or unknown entry makes another document, though every object stands
// as it stood.
bool SameDocument(QPDFObjectHandle before, QPDFObjectHandle now) {
    if (before.getKey("/Root").getObjGen() != now.getKey("/Root").getObjGen()) return false;
    const auto keys = now.getKeys();
    return SameEncryption(before, now) &&
           std::all_of(keys.begin(), keys.end(), [&](const std::string& key) {
               return TellsOfSection(key) ||
                      before.getKey(key).unparse() == now.getKey(key).unparse();
           });
}

class CComparison {
public:
    CComparison(CPdfBase& base, QPDF& revision, const FurtherSignatures& signatures,
                PdfAddition& addition)
        : m_base(base),
          m_revision(revision),
          m_references(revision),
          m_further(revision, m_references, signatures),
          m_addition(addition) {}

    void Run() {
        const Table before = m_revision.getXRefTable();
        const Table now = m_base.Objects();
        for (const auto& [number, entry] : now) {
            const auto old = before.find(number);
            if (old == before.end()) {
                NoteAdded(number.getObj());
            } else if (!StandsWhereItStood(before, old->second, now, entry)) {
                Compare(number);
            }
        }
        for (const auto& [number, entry] : before) {
            if (now.contains(number)) continue;
            m_addition.removed.push_back(number.getObj());
            m_addition.altered.push_back(number.getObj());
        }
        CompareTrailers();
        SortAltered();
    }

private:
    // What the revision referred to in vain would be filled, or its object hidden by another
    // generation.
    void NoteAdded(int number) {
        m_addition.added.push_back(number);
        if (m_references.RefersTo(number) || m_further.IsOfRevision(number)) {
            m_addition.altered.push_back(number);
        }
    }

    void CompareTrailers() {
        auto before = m_revision.getTrailer();
        if (SameDocument(before, m_base.Trailer())) return;
        m_addition.altered.push_back(before.getKey("/Root").getObjectID());
    }

    void Compare(QPDFObjGen number) {
        auto before = m_revision.getObjectByObjGen(number);
        auto now = m_base.Object(number);
        if (Same(before, now)) return;
        m_addition.changed.push_back(number.getObj());
        if (!m_further.Brings(number, before, now)) m_addition.altered.push_back(number.getObj());
    }

    void SortAltered() {
        std::vector<int>& altered = m_addition.altered;
        std::sort(altered.begin(), altered.end());
        altered.erase(std::unique(altered.begin(), altered.end()), altered.end());
    }

    CPdfBase& m_base;
    QPDF& m_revision;
    const CPdfReferences m_references;
    CFurtherSignature m_further;
    PdfAddition& m_addition;
};

// Those that were made behind the first `end` bytes.
FurtherSignatures MadeBehind(const std::vector<PdfSignature>& signatures, std::uint64_t end) {
    FurtherSignatures made;
    for (const PdfSignature& signature : signatures) {
        if (signature.problem == RangeProblem::kNone && signature.object != 0 &&
            signature.gapStart >= end) {
            made.emplace(signature.object,
                         QPDFObjGen(signature.widget, signature.widgetGeneration));
        }
    }
    return made;
}

}  // namespace

void CompareWithRevision(CPdfBase& base, std::string_view bytes,
                         const std::vector<PdfSignature>& signatures, PdfAddition& addition) {
    if (bytes.size() > kLargestCompared) return;
    QPDF revision;
    // Each revision is decoded anew, and an honest document may have many.
    LimitInflation(base.FileSize());
    if (!OpenRevision(bytes, revision)) return;
    PdfAddition found = addition;
    try {
        if (!AreUpdatesPlain(base, bytes.size(), revision.getXRefTable())) return;
        CComparison(base, revision, MadeBehind(signatures, bytes.size()), found).Run();
    } catch (const std::exception&) {
        return;
    }
    // What can't be read is null to qpdf, which tells of it here: nobody knows what it refers to.
    if (!revision.getWarnings().empty()) return;
    found.compared = true;
    addition = std::move(found);
}
