#include "pdf/PdfReferences.h"

#include <algorithm>

#include "pdf/SecurityStore.h"

namespace {

// The lists that signature fields stand in.
constexpr unsigned kFieldLists = kRoleAnnotations | kRoleFields | kRoleKids;

// Roles by what the holder is, from the trailer downwards: each line's holders have theirs by the
// line above.
constexpr unsigned kGifts[] = {kRoleCatalog | kRoleInformation,
                               kRoleForm | kRoleMetadata | kRoleSecurityStore,
                               kRoleFields | kRoleStoreEntry};
constexpr unsigned kAllGifts = kGifts[0] | kGifts[1] | kGifts[2];

std::string NameAt(const std::map<std::string, QPDFObjectHandle>& entries, const char* key) {
    const auto at = entries.find(key);
    if (at == entries.end()) return {};
    QPDFObjectHandle value = at->second;
    return value.isName() ? value.getName() : "";
}

QPDFObjGen ObjectAt(QPDFObjectHandle dictionary, const char* key) {
    return dictionary.isDictionary() ? dictionary.getKey(key).getObjGen() : QPDFObjGen();
}

}  // namespace

CPdfReferences::CPdfReferences(QPDF& pdf) {
    auto trailer = pdf.getTrailer();
    auto catalog = trailer.getKey("/Root");
    m_catalog = catalog.getObjGen();
    m_form = ObjectAt(catalog, "/AcroForm");
    m_securityStore = ObjectAt(catalog, "/DSS");
    VisitDictionary(trailer, {QPDFObjGen(), true, true, false});
    for (const auto& [number, entry] : pdf.getXRefTable()) {
        VisitObject(number, pdf.getObjectByObjGen(number));
    }
    CheckGifts();
}

const PdfUses& CPdfReferences::Of(QPDFObjGen object) const {
    static const PdfUses none;
    const auto at = m_uses.find(object.getObj());
    return at == m_uses.end() ? none : at->second;
}

bool CPdfReferences::IsFieldOnly(QPDFObjGen object) const {
    const PdfUses& uses = Of(object);
    if (uses.roles & ~(kRoleItem | kRoleParent | kRoleTagged)) return false;
    return uses.count > 0 &&
           std::all_of(uses.lists.begin(), uses.lists.end(),
                       [&](QPDFObjGen list) { return Of(list).Only(kFieldLists); });
}

void CPdfReferences::VisitObject(QPDFObjGen number, QPDFObjectHandle object) {
    if (object.isStream()) {
        auto dictionary = object.getDict();
        // A cross-reference stream's dictionary is a trailer.
        auto type = dictionary.getKey("/Type");
        const bool trailer = type.isName() && type.getName() == "/XRef";
        VisitDictionary(dictionary, {number, true, trailer, false});
    } else if (object.isDictionary()) {
        VisitDictionary(object, {number, true, false, number == m_form});
    } else if (object.isArray()) {
        for (auto& item : object.getArrayAsVector()) {
            if (!item.isIndirect()) {
                VisitNested(item, number);
                continue;
            }
            Note(item.getObjGen(), number, 0);
            m_uses[item.getObjGen().getObj()].lists.push_back(number);
        }
    }
}

void CPdfReferences::VisitDictionary(QPDFObjectHandle dictionary, const Place& place) {
    // Not by its keys: qpdf leaves out those whose value is missing.
    const auto entries = dictionary.getDictAsMap();
    const std::string type = NameAt(entries, "/Type");
    if (entries.contains("/DA") || (entries.contains("/FT") && NameAt(entries, "/FT") != "/Sig")) {
        m_takesFormDefaults = true;
    }
    for (const auto& [key, value] : entries) VisitEntry(key, value, place, type);
}

void CPdfReferences::VisitEntry(const std::string& key, QPDFObjectHandle value, const Place& place,
                                const std::string& type) {
    const unsigned role = RoleOf(key, place, type);
    if (value.isIndirect()) {
        Note(value.getObjGen(), place.holder, role);
        if (role & kAllGifts) m_gifts.push_back({value.getObjGen(), place.holder, role});
    } else if (value.isArray()) {
        const unsigned itemRole = role & kFieldLists ? kRoleItem : kRoleOther;
        for (auto& item : value.getArrayAsVector()) VisitItem(item, place.holder, itemRole);
    } else if (value.isDictionary()) {
        VisitDictionary(value, {place.holder, false, false, role == kRoleForm});
    }
}

void CPdfReferences::VisitItem(QPDFObjectHandle item, QPDFObjGen holder, unsigned role) {
    if (item.isIndirect()) {
        Note(item.getObjGen(), holder, role);
    } else {
        VisitNested(item, holder);
    }
}

void CPdfReferences::VisitNested(QPDFObjectHandle value, QPDFObjGen holder) {
    if (value.isArray()) {
        for (auto& item : value.getArrayAsVector()) VisitItem(item, holder, kRoleOther);
    } else if (value.isDictionary()) {
        VisitDictionary(value, {holder, false, false, false});
    }
}

unsigned CPdfReferences::RoleOf(const std::string& key, const Place& place,
                                const std::string& type) const {
    if (place.trailer) {
        if (key == "/Root") return kRoleCatalog;
        return key == "/Info" ? kRoleInformation : kRoleOther;
    }
    if (place.top && place.holder == m_catalog) return CatalogRole(key);
    if (place.top && place.holder == m_securityStore && IsSecurityStoreKey(key)) {
        return kRoleStoreEntry;
    }
    if (place.form && key == "/Fields") return kRoleFields;
    if (place.top && type == "/Page" && key == "/Annots") return kRoleAnnotations;
    if (key == "/Kids" && type != "/Pages") return kRoleKids;
    if (key == "/Parent") return kRoleParent;
    if (key == "/Data") return kRoleData;
    return key == "/Obj" && type == "/OBJR" ? kRoleTagged : kRoleOther;
}

unsigned CPdfReferences::CatalogRole(const std::string& key) const {
    if (key == "/AcroForm") return kRoleForm;
    if (key == "/Metadata") return kRoleMetadata;
    return key == "/DSS" ? kRoleSecurityStore : kRoleOther;
}

void CPdfReferences::Note(QPDFObjGen target, QPDFObjGen holder, unsigned role) {
    PdfUses& uses = m_uses[target.getObj()];
    uses.roles |= role;
    ++uses.count;
    uses.holder = holder;
}

bool CPdfReferences::IsGood(const Gift& gift) const {
    switch (gift.role) {
        case kRoleCatalog:
        case kRoleInformation:
            // Nobody refers to a cross-reference stream; 0 is the trailer.
            return gift.holder == QPDFObjGen() || Of(gift.holder).count == 0;
        case kRoleStoreEntry: return Of(gift.holder).Only(kRoleSecurityStore);
        default:
            // A form that stands in the catalog itself is as good as that.
            return Of(gift.holder).Only(gift.holder == m_catalog ? kCatalogRoles : kRoleForm);
    }
}

void CPdfReferences::CheckGifts() {
    for (const unsigned roles : kGifts) {
        for (const Gift& gift : m_gifts) {
            if ((gift.role & roles) && !IsGood(gift)) {
                m_uses[gift.target.getObj()].roles |= kRoleOther;
            }
        }
    }
}
