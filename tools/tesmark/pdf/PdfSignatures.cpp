#include "pdf/PdfSignatures.h"

#include <algorithm>
#include <set>

#include "pdf/PdfBase.h"
#include "pdf/PdfChanges.h"
#include "pdf/PdfFailure.h"
#include "pdf/PdfKey.h"
#include "pdf/RangeBinding.h"
#include "pdf/SignedRange.h"
#include "pdf/WidgetPages.h"

namespace {

// Of a form's tree of fields. More is no document that somebody signed.
constexpr int kDeepestField = 64;
constexpr std::size_t kMostFields = 200'000;
// Each has the file read up to its end.
constexpr std::size_t kMostSignatures = 200;
// Each comparison reads the document up to there.
constexpr int kMostCompared = 16;

[[noreturn]] void ThrowFormDamaged() {
    throw CPdfFailure(StampError::kDamaged, "The PDF is damaged: its form can't be followed.");
}

std::string TextOf(QPDFObjectHandle object) {
    return object.isString() ? object.getUTF8Value() : "";
}

std::string NameOf(QPDFObjectHandle object) {
    return object.isName() ? object.getName().substr(1) : "";
}

// ISO 32000-2, 12.8.2.2; 2 where a DocMDP transform tells no /P.
int Certifies(QPDFObjectHandle dictionary) {
    auto references = dictionary.getKey("/Reference");
    if (!references.isArray()) return 0;
    for (int i = 0; i < references.getArrayNItems() && i < 16; ++i) {
        auto reference = references.getArrayItem(i);
        if (NameOf(KeyOf(reference, "/TransformMethod")) != "DocMDP") continue;
        auto permission = KeyOf(KeyOf(reference, "/TransformParams"), "/P");
        const long long told = permission.isInteger() ? permission.getIntValue() : 2;
        return told >= 1 && told <= 3 ? static_cast<int>(told) : 2;
    }
    return 0;
}

// false: it is something else than a rectangle.
bool ReadRectangle(QPDFObjectHandle array, std::array<double, 4>& rectangle) {
    if (!array.isRectangle()) return array.isNull();
    const auto told = array.getArrayAsRectangle();
    rectangle = {std::min(told.llx, told.urx), std::min(told.lly, told.ury),
                 std::max(told.llx, told.urx), std::max(told.lly, told.ury)};
    return true;
}

// What a field inherits from those above it.
struct Field {
    QPDFObjectHandle object;
    std::string name;
    bool signature = false;
    QPDFObjectHandle value;
    QPDFObjGen holder;  // the object that the value is, or is in
    int depth = 0;
};

class CSignatureReader {
public:
    CSignatureReader(CPdfBase& base, std::string_view file, PdfSignatures& found)
        : m_base(base), m_file(file), m_found(found), m_pages(base) {}

    void Run() {
        auto fields = KeyOf(m_base.Catalog().getKey("/AcroForm"), "/Fields");
        if (fields.isNull()) return;
        if (!fields.isArray()) ThrowFormDamaged();
        FollowAll(fields,
                  {QPDFObjectHandle::newNull(), "", false, QPDFObjectHandle::newNull(), {}, 0});
    }

private:
    void FollowAll(QPDFObjectHandle list, const Field& parent) {
        for (int i = 0; i < list.getArrayNItems(); ++i) Follow(list.getArrayItem(i), parent);
    }

    void Follow(QPDFObjectHandle object, const Field& parent) {
        if (!object.isDictionary()) return;
        // A field that is reached twice, or that holds itself, is read once.
        if (object.isIndirect() && !m_seen.insert(object.getObjGen()).second) return;
        if (++m_fields > kMostFields || parent.depth > kDeepestField) ThrowFormDamaged();
        Field field = parent;
        field.object = object;
        ++field.depth;
        const std::string part = TextOf(object.getKey("/T"));
        if (!part.empty()) field.name += (field.name.empty() ? "" : ".") + part;
        auto type = object.getKey("/FT");
        if (!type.isNull()) field.signature = NameOf(type) == "Sig";
        auto value = object.getKey("/V");
        if (!value.isNull()) {
            field.value = value;
            field.holder = value.isIndirect() ? value.getObjGen() : object.getObjGen();
        }
        auto kids = object.getKey("/Kids");
        if (HasFields(kids)) {
            FollowAll(kids, field);
        } else if (field.signature) {
            Add(field, kids);
        }
    }

    // Kids without a name of their own are a field's widgets.
    static bool HasFields(QPDFObjectHandle kids) {
        if (!kids.isArray()) return false;
        for (int i = 0; i < kids.getArrayNItems(); ++i) {
            if (KeyOf(kids.getArrayItem(i), "/T").isString()) return true;
        }
        return false;
    }

    void Add(const Field& field, QPDFObjectHandle kids) {
        QPDFObjectHandle value = field.value;
        if (!value.isDictionary()) {
            ++m_found.emptyFields;
            return;
        }
        if (m_found.list.size() >= kMostSignatures) ThrowFormDamaged();
        PdfSignature signature;
        signature.fieldName = field.name;
        signature.object = value.getObjectID();
        signature.filter = NameOf(value.getKey("/Filter"));
        signature.subFilter = NameOf(value.getKey("/SubFilter"));
        signature.name = TextOf(value.getKey("/Name"));
        signature.reason = TextOf(value.getKey("/Reason"));
        signature.location = TextOf(value.getKey("/Location"));
        signature.time = TextOf(value.getKey("/M"));
        signature.certifies = Certifies(value);
        TellPlace(field, kids, signature);
        ReadSignedRange(value, m_file, m_base.HeaderOffset(), OffsetOf(field.holder), signature);
        m_found.list.push_back(std::move(signature));
    }

    void TellPlace(const Field& field, QPDFObjectHandle kids, PdfSignature& signature) {
        const int count = kids.isArray() ? kids.getArrayNItems() : 0;
        auto widget = count > 0 ? kids.getArrayItem(0) : field.object;
        const bool readable = ReadRectangle(KeyOf(widget, "/Rect"), signature.rectangle);
        if (readable && count <= 1) {
            signature.widget = widget.getObjectID();
            signature.widgetGeneration = widget.getGeneration();
        }
        signature.page = m_pages.PageOf(widget, signature.rectangle);
    }

    qpdf_offset_t OffsetOf(QPDFObjGen number) {
        if (m_objects.empty()) m_objects = m_base.Objects();
        const auto entry = m_objects.find(number);
        return entry != m_objects.end() && entry->second.getType() == 1 ? entry->second.getOffset()
                                                                        : -1;
    }

    CPdfBase& m_base;
    std::string_view m_file;
    PdfSignatures& m_found;
    CWidgetPages m_pages;
    std::map<QPDFObjGen, QPDFXRefEntry> m_objects;
    std::set<QPDFObjGen> m_seen;
    std::size_t m_fields = 0;
};

// A value signs one field. Which of several was meant nobody can tell.
void RefuseShared(std::vector<PdfSignature>& signatures) {
    std::map<std::uint64_t, int> gaps;
    for (const PdfSignature& signature : signatures) ++gaps[signature.gapStart];
    for (PdfSignature& signature : signatures) {
        if (signature.problem == RangeProblem::kNone && gaps[signature.gapStart] > 1) {
            RefuseRange(signature, RangeProblem::kShared);
        }
    }
}

// Those whose range is unsound come last.
bool StandsBefore(const PdfSignature& one, const PdfSignature& other) {
    if (one.end == 0 || other.end == 0) return one.end != 0 && other.end == 0;
    return one.end < other.end;
}

void TellAdditions(CPdfBase& base, std::string_view file, PdfSignatures& found) {
    CheckPages(base, found.list);
    int compared = 0;
    for (PdfSignature& signature : found.list) {
        if (signature.problem != RangeProblem::kNone) continue;
        signature.after.bytes = found.fileSize - signature.end;
        if (signature.after.bytes == 0) continue;
        signature.after.signature =
            std::any_of(found.list.begin(), found.list.end(), [&](const PdfSignature& other) {
                return other.problem == RangeProblem::kNone && other.gapStart >= signature.end;
            });
        if (++compared > kMostCompared) continue;
        CompareWithRevision(base, file.substr(0, signature.end), found.list, signature.after);
    }
}

bool SomethingWasAdded(const PdfSignatures& found) {
    return std::any_of(found.list.begin(), found.list.end(), [&](const PdfSignature& signature) {
        return signature.problem == RangeProblem::kNone && signature.end < found.fileSize;
    });
}

void CheckIsOpen(const std::string& path, const CDocumentBytes& document) {
    if (document.IsOpen()) return;
    throw CPdfFailure(StampError::kInputUnreadable, WhyUnreadable(path));
}

PdfSignatures ReadForm(CPdfBase& base, std::string_view file) {
    PdfSignatures found;
    found.fileSize = base.FileSize();
    CSignatureReader(base, file, found).Run();
    base.CheckWhatWasRead();
    RefuseShared(found.list);
    return found;
}

}  // namespace

class CPdfSignatureReading::CState {
public:
    explicit CState(std::string_view file)
        : m_file(file),
          m_base(file),
          m_found(ReadForm(m_base, file)),
          m_binding(file, m_found.list) {
        m_binding.Begin();
    }

    const PdfSignatures& Found() const { return m_found; }

    PdfSignatures Finish() {
        if (!m_binding.Check(m_found.list)) {
            throw CPdfFailure(StampError::kDamaged, "The PDF's byte ranges can't be followed.");
        }
        std::stable_sort(m_found.list.begin(), m_found.list.end(), StandsBefore);
        if (SomethingWasAdded(m_found)) TellAdditions(m_base, m_file, m_found);
        m_base.CheckWhatWasRead();
        return std::move(m_found);
    }

private:
    std::string_view m_file;
    CPdfBase m_base;
    PdfSignatures m_found;
    CRangeBinding m_binding;
};

CPdfSignatureReading::CPdfSignatureReading(std::string path, CDocumentBytes& document)
    : m_path(std::move(path)), m_document(document) {}

CPdfSignatureReading::~CPdfSignatureReading() = default;

StampError CPdfSignatureReading::Begin(std::string& message) {
    return ResultOf(
        [this] {
            CheckIsOpen(m_path, m_document);
            m_state = std::make_unique<CState>(m_document.Whole());
        },
        message);
}

const PdfSignatures& CPdfSignatureReading::Found() const { return m_state->Found(); }

StampError CPdfSignatureReading::Finish(PdfSignatures& signatures, std::string& message) {
    return ResultOf([&] { signatures = m_state->Finish(); }, message);
}

StampError ReadPdfSignatures(const std::string& path, PdfSignatures& signatures,
                             std::string& message) {
    signatures = {};
    CDocumentBytes document(path);
    CPdfSignatureReading reading(path, document);
    const StampError error = reading.Begin(message);
    return error == StampError::kNone ? reading.Finish(signatures, message) : error;
}
