// PdfReferences.h - who refers to the objects of a PDF, and as what.
#pragma once

#include <map>
#include <qpdf/QPDF.hh>
#include <vector>

// What an object is to the one that refers to it. An object may be several things at once: a
// dictionary that serves as a page's resources too is more than what it calls itself.
enum PdfRole : unsigned {
    kRoleOther = 1U << 0,
    kRoleCatalog = 1U << 1,      // /Root of the trailer
    kRoleInformation = 1U << 2,  // /Info of the trailer
    kRoleMetadata = 1U << 3,     // the catalog's /Metadata
    kRoleForm = 1U << 4,         // the catalog's /AcroForm
    // The catalog's /DSS (ISO 32000-2, 12.8.4.3).
    kRoleSecurityStore = 1U << 5,
    kRoleAnnotations = 1U << 6,  // the list that is a page's /Annots
    kRoleFields = 1U << 7,       // the list that is the form's /Fields
    kRoleKids = 1U << 8,         // a list of /Kids that is none of pages
    kRoleItem = 1U << 9,         // in such a list that stands in its dictionary itself
    kRoleParent = 1U << 10,
    kRoleTagged = 1U << 11,      // the object of an object reference in the structure tree
    kRoleData = 1U << 12,        // the /Data that a signature's reference tells of
    kRoleStoreEntry = 1U << 13,  // a list or the /VRI right below the security store
};

// Of a catalog that is nothing else.
constexpr unsigned kCatalogRoles = kRoleCatalog | kRoleData;

struct PdfUses {
    unsigned roles = 0;     // all that its references give it
    std::size_t count = 0;  // of references
    QPDFObjGen holder;      // the object that holds the last of them; 0 for the trailer
    // Objects that are arrays and hold it; `roles` doesn't tell of these.
    std::vector<QPDFObjGen> lists;

    // It is used, and as nothing else than `allowed`.
    bool Only(unsigned allowed) const { return count > 0 && lists.empty() && !(roles & ~allowed); }
};

// Goes once through all objects and the trailer. Takes time and memory in proportion to their
// text; data of streams is not read, but that of object streams is. A reference counts for its
// number under whatever generation: readers don't all look at it. What a catalog, form, security
// store or cross-reference stream refers to has its role by that only if that object serves as
// nothing else: one that is a page too gives kRoleOther besides.
class CPdfReferences {
public:
    explicit CPdfReferences(QPDF& pdf);

    // Nothing where nobody refers to it.
    const PdfUses& Of(QPDFObjGen object) const;
    bool RefersTo(int number) const { return m_uses.contains(number); }
    // Each reference to it is a form's or a page's to one of its fields or widgets.
    bool IsFieldOnly(QPDFObjGen object) const;
    // Something takes, or may take, the defaults of the form for its text: it is a field other than
    // a signature's, or has a default appearance.
    bool TakesFormDefaults() const { return m_takesFormDefaults; }

private:
    // Where a dictionary stands.
    struct Place {
        QPDFObjGen holder;
        bool top = false;  // it is the object itself, or its stream's dictionary
        bool trailer = false;
        bool form = false;
    };
    // A role that the target has by what its holder is.
    struct Gift {
        QPDFObjGen target;
        QPDFObjGen holder;
        unsigned role = 0;
    };

    void VisitObject(QPDFObjGen number, QPDFObjectHandle object);
    void VisitDictionary(QPDFObjectHandle dictionary, const Place& place);
    void VisitEntry(const std::string& key, QPDFObjectHandle value, const Place& place,
                    const std::string& type);
    void VisitNested(QPDFObjectHandle value, QPDFObjGen holder);
    void VisitItem(QPDFObjectHandle item, QPDFObjGen holder, unsigned role);
    unsigned RoleOf(const std::string& key, const Place& place, const std::string& type) const;
    unsigned CatalogRole(const std::string& key) const;
    void Note(QPDFObjGen target, QPDFObjGen holder, unsigned role);
    bool IsGood(const Gift& gift) const;
    void CheckGifts();

    QPDFObjGen m_catalog;
    QPDFObjGen m_form;
    QPDFObjGen m_securityStore;
    std::map<int, PdfUses> m_uses;
    std::vector<Gift> m_gifts;
    bool m_takesFormDefaults = false;
};
