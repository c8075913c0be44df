#include "pdf/PdfChanges.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <qpdf/QPDFXRefEntry.hh>
#include <set>
#include <vector>

namespace {

// A longer document is told by its bytes alone.
constexpr std::uint64_t kLargestCompared = 512 * 1024 * 1024;
// Longer lists of annotations aren't gone through.
constexpr int kMostItems = 10'000;

using Table = std::map<QPDFObjGen, QPDFXRefEntry>;
using Keys = std::set<std::string>;

bool OpenRevision(const std::string& bytes, QPDF& revision) {
    revision.setSuppressWarnings(true);
    revision.setAttemptRecovery(false);
    try {
        revision.processMemoryFile("revision", bytes.data(), bytes.size());
        return revision.getRoot().isDictionary();
    } catch (const std::exception&) {
        return false;
    }
}

bool ReadStart(const std::string& path, std::uint64_t size, std::string& bytes) {
    if (size > kLargestCompared) return false;
    std::ifstream file(path, std::ios::binary);
    bytes.resize(static_cast<std::size_t>(size));
    return file.read(bytes.data(), static_cast<std::streamsize>(size)).good();
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

bool SameBut(QPDFObjectHandle one, QPDFObjectHandle other, const Keys& mayDiffer) {
    Keys keys = one.getKeys();
    keys.merge(other.getKeys());
    return std::all_of(keys.begin(), keys.end(), [&](const std::string& key) {
        return mayDiffer.contains(key) || one.getKey(key).unparse() == other.getKey(key).unparse();
    });
}

bool IsSignatureField(QPDFObjectHandle object) {
    if (!object.isDictionary()) return false;
    auto type = object.getKey("/FT");
    return type.isName() && type.getName() == "/Sig";
}

// `grown` holds all of `before`, in its order, and nothing else than signature fields behind it.
bool GrewBySignatures(QPDFObjectHandle before, QPDFObjectHandle grown) {
    if (before.isNull() && grown.isNull()) return true;
    if (!grown.isArray() || !(before.isArray() || before.isNull())) return false;
    const int old = before.isArray() ? before.getArrayNItems() : 0;
    const int now = grown.getArrayNItems();
    if (now < old || now > kMostItems) return false;
    for (int i = 0; i < now; ++i) {
        auto item = grown.getArrayItem(i);
        if (i < old ? before.getArrayItem(i).unparse() != item.unparse()
                    : !IsSignatureField(item)) {
            return false;
        }
    }
    return true;
}

bool IsOfType(QPDFObjectHandle object, const char* type) {
    if (!object.isDictionary()) return false;
    auto name = object.getKey("/Type");
    return name.isName() && name.getName() == type;
}

bool IsForm(QPDFObjectHandle object) {
    return object.isDictionary() && object.getKey("/Fields").isArray();
}

bool FormGrew(QPDFObjectHandle before, QPDFObjectHandle now) {
    if (before.isNull()) return IsForm(now) && GrewBySignatures(before, now.getKey("/Fields"));
    if (!IsForm(before) || !IsForm(now)) return false;
    return SameBut(before, now, {"/Fields", "/SigFlags"}) &&
           GrewBySignatures(before.getKey("/Fields"), now.getKey("/Fields"));
}

// A field that stood there unsigned may be signed.
bool FieldWasSigned(QPDFObjectHandle before, QPDFObjectHandle now) {
    return IsSignatureField(before) && IsSignatureField(now) && before.getKey("/V").isNull() &&
           SameBut(before, now, {"/V", "/AP", "/M", "/F"});
}

// Is this the change of an object that a further signature brings with it?
bool SignatureBrings(QPDFObjectHandle before, QPDFObjectHandle now) {
    if (before.isArray()) return GrewBySignatures(before, now);
    if (!before.isDictionary() || !now.isDictionary()) return false;
    if (IsOfType(before, "/Page")) {
        return SameBut(before, now, {"/Annots"}) &&
               GrewBySignatures(before.getKey("/Annots"), now.getKey("/Annots"));
    }
    if (IsOfType(before, "/Catalog")) {
        return SameBut(before, now, {"/AcroForm", "/Extensions", "/DSS"}) &&
               FormGrew(before.getKey("/AcroForm"), now.getKey("/AcroForm"));
    }
    return IsForm(before) ? FormGrew(before, now) : FieldWasSigned(before, now);
}

class CComparison {
public:
    CComparison(CPdfBase& base, QPDF& revision, PdfAddition& addition)
        : m_base(base), m_revision(revision), m_addition(addition) {}

    void Run() {
        const Table before = m_revision.getXRefTable();
        const Table now = m_base.Objects();
        for (const auto& [number, entry] : now) {
            const auto old = before.find(number);
            if (old == before.end()) {
                m_addition.added.push_back(number.getObj());
            } else if (!StandsWhereItStood(before, old->second, now, entry)) {
                Compare(number);
            }
        }
        for (const auto& [number, entry] : before) {
            if (now.contains(number)) continue;
            m_addition.removed.push_back(number.getObj());
            m_addition.altered.push_back(number.getObj());
        }
        CompareCatalogs();
        std::sort(m_addition.altered.begin(), m_addition.altered.end());
    }

private:
    // Another catalog is another document, though every object stands as it stood.
    void CompareCatalogs() {
        const QPDFObjGen before = m_revision.getTrailer().getKey("/Root").getObjGen();
        if (before == m_base.Trailer().getKey("/Root").getObjGen()) return;
        m_addition.altered.push_back(before.getObj());
    }

    void Compare(QPDFObjGen number) {
        auto before = m_revision.getObjectByObjGen(number);
        auto now = m_base.Object(number);
        if (Same(before, now)) return;
        m_addition.changed.push_back(number.getObj());
        if (!IsAboutDocument(number, before) && !SignatureBrings(before, now))
            m_addition.altered.push_back(number.getObj());
    }

    // Its title, dates and the like, which writers renew and no page shows.
    bool IsAboutDocument(QPDFObjGen number, QPDFObjectHandle before) {
        if (before.isStream()) return IsOfType(before.getDict(), "/Metadata");
        auto information = m_revision.getTrailer().getKey("/Info");
        return information.isIndirect() && information.getObjGen() == number;
    }

    CPdfBase& m_base;
    QPDF& m_revision;
    PdfAddition& m_addition;
};

}  // namespace

void CompareWithRevision(CPdfBase& base, const std::string& path, std::uint64_t end,
                         PdfAddition& addition) {
    std::string bytes;
    QPDF revision;
    if (!ReadStart(path, end, bytes) || !OpenRevision(bytes, revision)) return;
    PdfAddition found = addition;
    try {
        CComparison(base, revision, found).Run();
    } catch (const std::exception&) {
        return;
    }
    found.compared = true;
    addition = std::move(found);
}
