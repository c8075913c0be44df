#include "pdf/FurtherSignature.h"

#include <algorithm>

#include "pdf/PdfKey.h"
#include "pdf/SecurityStore.h"

namespace {

using Keys = std::set<std::string>;

// Longer lists aren't gone through.
constexpr int kMostItems = 10'000;

// Nothing that acts, like /A and /AA, or that depends on a layer.
const Keys kFieldKeys = {
    "/Type", "/FT", "/T",      "/TU",   "/TM", "/F",  "/Ff",      "/P",           "/Rect", "/V",
    "/AP",   "/AS", "/M",      "/DA",   "/DR", "/MK", "/BS",      "/Border",      "/NM",   "/Lock",
    "/SV",   "/Q",  "/Parent", "/Kids", "/C",  "/H",  "/Subtype", "/StructParent"};

bool IsNamed(QPDFObjectHandle object, const char* key, const char* name) {
    auto value = KeyOf(object, key);
    return value.isName() && value.getName() == name;
}

bool IsNamedOrNothing(QPDFObjectHandle object, const char* key, const char* name) {
    return KeyOf(object, key).isNull() || IsNamed(object, key, name);
}

bool SameBut(QPDFObjectHandle one, QPDFObjectHandle other, const Keys& mayDiffer) {
    Keys keys = one.getKeys();
    keys.merge(other.getKeys());
    return std::all_of(keys.begin(), keys.end(), [&](const std::string& key) {
        return mayDiffer.contains(key) || one.getKey(key).unparse() == other.getKey(key).unparse();
    });
}

bool HasOnly(QPDFObjectHandle dictionary, const Keys& allowed) {
    const Keys keys = dictionary.getKeys();
    return std::includes(allowed.begin(), allowed.end(), keys.begin(), keys.end());
}

bool IsForm(QPDFObjectHandle object) {
    return object.isDictionary() && object.getKey("/Fields").isArray();
}

bool HoldsTextsOnly(QPDFObjectHandle information) {
    if (!information.isDictionary()) return false;
    const Keys keys = information.getKeys();
    return std::all_of(keys.begin(), keys.end(), [&](const std::string& key) {
        auto value = information.getKey(key);
        return value.isString() || (key == "/Trapped" && value.isName());
    });
}

bool IsXmp(QPDFObjectHandle object) {
    return object.isStream() && IsNamed(object.getDict(), "/Type", "/Metadata") &&
           IsNamed(object.getDict(), "/Subtype", "/XML");
}

// `grown` holds all of `before`, in its order, and behind it only items that `isGood` takes.
template <typename Judge>
bool Grew(QPDFObjectHandle before, QPDFObjectHandle grown, Judge isGood) {
    if (before.isNull() && grown.isNull()) return true;
    if (!grown.isArray() || !(before.isArray() || before.isNull())) return false;
    const int old = before.isArray() ? before.getArrayNItems() : 0;
    const int now = grown.getArrayNItems();
    if (now < old || now > kMostItems) return false;
    for (int i = 0; i < now; ++i) {
        auto item = grown.getArrayItem(i);
        if (i < old ? before.getArrayItem(i).unparse() != item.unparse() : !isGood(item)) {
            return false;
        }
    }
    return true;
}

// Its own or what it has from its parent.
QPDFObjectHandle Inherited(QPDFObjectHandle field, const char* key) {
    auto own = KeyOf(field, key);
    return own.isNull() ? KeyOf(KeyOf(field, "/Parent"), key) : own;
}

bool IsSignatureField(QPDFObjectHandle field) {
    auto type = Inherited(field, "/FT");
    return type.isName() && type.getName() == "/Sig";
}

bool IsOnlyKid(QPDFObjectHandle field, QPDFObjGen kid) {
    auto kids = KeyOf(field, "/Kids");
    return kids.isArray() && kids.getArrayNItems() == 1 && kids.getArrayItem(0).getObjGen() == kid;
}

}  // namespace

CFurtherSignature::CFurtherSignature(QPDF& revision, const CPdfReferences& references,
                                     const FurtherSignatures& signatures)
    : m_references(references),
      m_signatures(signatures),
      m_catalog(revision.getTrailer().getKey("/Root").getObjGen()) {
    for (const auto& [number, entry] : revision.getXRefTable()) m_numbers.insert(number.getObj());
}

bool CFurtherSignature::Brings(QPDFObjGen number, QPDFObjectHandle before, QPDFObjectHandle now) {
    const PdfUses& uses = m_references.Of(number);
    if (before.isStream()) return uses.Only(kRoleMetadata) && IsXmp(before) && IsXmp(now);
    if (uses.Only(kRoleSecurityStore)) return SecurityStoreGrew(before, now);
    if (uses.Only(kRoleStoreEntry)) return SecurityStoreEntryGrew(before, now);
    if (before.isArray()) return ListGrew(number, before, now);
    if (!before.isDictionary() || !now.isDictionary()) return false;
    if (uses.Only(kRoleInformation)) return HoldsTextsOnly(before) && HoldsTextsOnly(now);
    if (number == m_catalog) {
        return uses.Only(kCatalogRoles) && CatalogGrew(before, now);
    }
    if (uses.Only(kRoleForm)) return FormGrew(before, now);
    if (IsNamed(before, "/Type", "/Page")) {
        return SameBut(before, now, {"/Annots"}) &&
               AnnotationsGrew(before.getKey("/Annots"), now.getKey("/Annots"), number);
    }
    return FieldWasSigned(number, before, now);
}

bool CFurtherSignature::CatalogGrew(QPDFObjectHandle before, QPDFObjectHandle now) {
    return SameBut(before, now, {"/AcroForm", "/Extensions", "/DSS"}) &&
           FormGrew(before.getKey("/AcroForm"), now.getKey("/AcroForm")) &&
           (SameBut(before, now, {"/AcroForm", "/Extensions"}) ||
            SecurityStoreGrew(before.getKey("/DSS"), now.getKey("/DSS")));
}

bool CFurtherSignature::FormGrew(QPDFObjectHandle before, QPDFObjectHandle now) {
    // The signature that was made first stands in a form already.
    if (!IsForm(before) || !IsForm(now)) return before.isNull() && now.isNull();
    Keys mayDiffer = {"/Fields", "/SigFlags"};
    for (const char* key : {"/DR", "/DA"}) {
        if (before.getKey(key).isNull() && !m_references.TakesFormDefaults()) {
            mayDiffer.insert(key);
        }
    }
    return SameBut(before, now, mayDiffer) &&
           FieldsGrew(before.getKey("/Fields"), now.getKey("/Fields"));
}

bool CFurtherSignature::FieldsGrew(QPDFObjectHandle before, QPDFObjectHandle now) {
    return Grew(before, now, [&](QPDFObjectHandle item) { return IsNewField(item); });
}

bool CFurtherSignature::AnnotationsGrew(QPDFObjectHandle before, QPDFObjectHandle now,
                                        QPDFObjGen page) {
    return Grew(before, now, [&](QPDFObjectHandle item) { return IsNewWidget(item, page); });
}

bool CFurtherSignature::ListGrew(QPDFObjGen number, QPDFObjectHandle before, QPDFObjectHandle now) {
    const PdfUses& uses = m_references.Of(number);
    if (uses.count != 1) return false;
    if (uses.Only(kRoleFields)) return FieldsGrew(before, now);
    return uses.Only(kRoleAnnotations) && AnnotationsGrew(before, now, uses.holder);
}

bool CFurtherSignature::FieldWasSigned(QPDFObjGen number, QPDFObjectHandle before,
                                       QPDFObjectHandle now) {
    if (!m_references.IsFieldOnly(number) || !IsSignatureField(before) ||
        !Inherited(before, "/V").isNull()) {
        return false;
    }
    const QPDFObjGen widget = ToldWidget(now);
    if (widget == number) return SameBut(before, now, {"/V", "/AP", "/AS", "/M", "/F"});
    // It may be listed as an annotation too, so its looks stay.
    return widget.isIndirect() && IsOnlyKid(now, widget) && SameBut(before, now, {"/V", "/M"});
}

bool CFurtherSignature::IsNew(QPDFObjectHandle object) const {
    return object.isIndirect() && !IsOfRevision(object.getObjectID());
}

bool CFurtherSignature::IsSigned(QPDFObjectHandle field) const {
    auto value = Inherited(field, "/V");
    return value.isIndirect() && m_signatures.contains(value.getObjectID());
}

QPDFObjGen CFurtherSignature::ToldWidget(QPDFObjectHandle field) const {
    return IsSigned(field) ? m_signatures.at(Inherited(field, "/V").getObjectID()) : QPDFObjGen();
}

bool CFurtherSignature::IsNewField(QPDFObjectHandle field) {
    if (!IsNew(field) || !field.isDictionary() || !HasOnly(field, kFieldKeys)) return false;
    if (!field.getKey("/Parent").isNull() || !IsSignatureField(field) || !IsSigned(field) ||
        !IsNamedOrNothing(field, "/Type", "/Annot") ||
        !IsNamedOrNothing(field, "/Subtype", "/Widget")) {
        return false;
    }
    auto kids = field.getKey("/Kids");
    return kids.isNull() ||
           (kids.isArray() && kids.getArrayNItems() == 1 && IsNew(kids.getArrayItem(0)));
}

bool CFurtherSignature::IsNewWidget(QPDFObjectHandle widget, QPDFObjGen page) {
    if (!IsNew(widget) || !widget.isDictionary() || !HasOnly(widget, kFieldKeys)) return false;
    if (!IsNamed(widget, "/Subtype", "/Widget") || !IsNamedOrNothing(widget, "/Type", "/Annot") ||
        !IsNamedOrNothing(widget, "/FT", "/Sig") || !widget.getKey("/Kids").isNull() ||
        widget.getKey("/P").getObjGen() != page) {
        return false;
    }
    auto parent = widget.getKey("/Parent");
    if (!parent.isNull()) {
        if (!IsNewField(parent) || !IsOnlyKid(parent, widget.getObjGen())) return false;
    }
    return IsSignatureField(widget) && ToldWidget(widget) == widget.getObjGen();
}
