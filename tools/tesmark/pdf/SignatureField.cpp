#include "pdf/SignatureField.h"

#include <cstdio>
#include <ctime>
#include <set>

#include "pdf/PdfFailure.h"
#include "pdf/PdfKey.h"
#include "pdf/SealAppearance.h"
#include "platform/Clock.h"

namespace {

constexpr int kPrintLocked = 4 + 128;
// SignaturesExist, AppendOnly.
constexpr int kSignatureFlags = 1 + 2;
constexpr int kNoChanges = 1;

// The /P of a reference's DocMDP transform; 2 where it tells none.
int PermissionOf(QPDFObjectHandle reference) {
    if (!reference.isDictionary()) return 0;
    auto method = reference.getKey("/TransformMethod");
    if (!method.isName() || method.getName() != "/DocMDP") return 0;
    auto parameters = reference.getKey("/TransformParams");
    if (!parameters.isDictionary()) return 2;
    auto permission = parameters.getKey("/P");
    return permission.isInteger() ? permission.getIntValueAsInt() : 2;
}

// `array` with `item` at its end, as text; a new one where there is none.
std::string Appended(QPDFObjectHandle array, QPDFObjGen item) {
    std::string text = "[";
    if (array.isArray()) {
        for (auto& old : array.getArrayAsVector()) text += old.unparse() + " ";
    }
    return text + Reference(item) + "]";
}

void CheckIsArrayOrNull(QPDFObjectHandle object, const char* what) {
    if (object.isArray() || object.isNull()) return;
    throw CPdfFailure(StampError::kDamaged,
                      std::string("The PDF is damaged: its list of ") + what + " is none.");
}

// A dictionary's text with one entry set to `value`.
std::string With(QPDFObjectHandle dictionary, const std::string& key, const std::string& value) {
    std::string text = "<< ";
    for (const auto& old : dictionary.getKeys()) {
        if (old == key) continue;
        text += QPDFObjectHandle::newName(old).unparse() + " " + dictionary.getKey(old).unparse();
        text += " ";
    }
    return text + key + " " + value + " >>";
}

std::string FreeName(QPDFObjectHandle fields) {
    std::set<std::string> taken;
    if (fields.isArray()) {
        for (auto& field : fields.getArrayAsVector()) {
            auto name = KeyOf(field, "/T");
            if (name.isString()) taken.insert(name.getUTF8Value());
        }
    }
    for (int i = 1;; ++i) {
        const std::string name = "Signature" + std::to_string(i);
        if (!taken.contains(name)) return name;
    }
}

void AddToPage(CPdfUpdate& update, QPDFObjectHandle page, QPDFObjGen widget) {
    auto annotations = page.getKey("/Annots");
    CheckIsArrayOrNull(annotations, "annotations");
    const std::string list = Appended(annotations, widget);
    if (annotations.isArray() && annotations.isIndirect()) {
        update.Set(annotations.getObjGen(), list);
    } else {
        update.Set(page.getObjGen(), With(page, "/Annots", list));
    }
}

int FlagsOf(QPDFObjectHandle form) {
    auto flags = KeyOf(form, "/SigFlags");
    return flags.isInteger() ? flags.getIntValueAsInt() : 0;
}

// The form's dictionary with the field, as text.
std::string FormWith(CPdfUpdate& update, QPDFObjectHandle form, QPDFObjGen widget) {
    const std::string flags = std::to_string(FlagsOf(form) | kSignatureFlags);
    if (!form.isDictionary()) {
        return "<< /Fields [" + Reference(widget) + "] /SigFlags " + flags + " >>";
    }
    auto fields = form.getKey("/Fields");
    std::string list = Appended(fields, widget);
    if (fields.isArray() && fields.isIndirect()) {
        update.Set(fields.getObjGen(), list);
        list = fields.unparse();
    }
    auto changed = form.shallowCopy();
    changed.removeKey("/Fields");
    return With(changed, "/SigFlags", flags + " /Fields " + list);
}

void AddToForm(CPdfUpdate& update, CPdfBase& base, QPDFObjGen widget) {
    auto catalog = base.Catalog();
    auto form = catalog.getKey("/AcroForm");
    const std::string text = FormWith(update, form, widget);
    if (form.isDictionary() && form.isIndirect()) {
        update.Set(form.getObjGen(), text);
    } else {
        update.Set(catalog.getObjGen(), With(catalog, "/AcroForm", text));
    }
}

void AppendText(std::string& entries, const char* key, const std::string& utf8) {
    if (utf8.empty()) return;
    entries += std::string(" ") + key + " " + QPDFObjectHandle::newUnicodeString(utf8).unparse();
}

// "D:20261121092127+08'00'", ISO 32000-2, 7.9.4.
std::string PdfDate(std::int64_t seconds, int offsetMinutes) {
    const std::tm parts = platform::UtcTime(seconds + std::int64_t{offsetMinutes} * 60);
    char text[80];
    const int offset = offsetMinutes < 0 ? -offsetMinutes : offsetMinutes;
    std::snprintf(text, sizeof text, "(D:%04d%02d%02d%02d%02d%02d%c%02d'%02d')",
                  parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                  parts.tm_min, parts.tm_sec, offsetMinutes < 0 ? '-' : '+', offset / 60,
                  offset % 60);
    return text;
}

}  // namespace

void CheckChangesAllowed(CPdfBase& base) {
    auto signature = KeyOf(KeyOf(base.Catalog(), "/Perms"), "/DocMDP");
    auto references = KeyOf(signature, "/Reference");
    if (!references.isArray()) return;
    for (auto& reference : references.getArrayAsVector()) {
        if (PermissionOf(reference) == kNoChanges) {
            throw CPdfFailure(StampError::kChangesForbidden,
                              "The PDF is certified, and its certification forbids any change.");
        }
    }
}

std::string AddSignatureField(CPdfUpdate& update, CPdfBase& base, const PdfPage& page,
                              const SealPlacement& place, QPDFObjGen appearance,
                              QPDFObjGen signature) {
    auto fields = KeyOf(base.Catalog().getKey("/AcroForm"), "/Fields");
    CheckIsArrayOrNull(fields, "form fields");
    const std::string name = FreeName(fields);
    const QPDFObjGen widget = update.Reserve();
    QPDFObjectHandle pageObject = page.page;
    update.Set(widget, "<< /Type /Annot /Subtype /Widget /FT /Sig /T (" + name + ") /F " +
                           std::to_string(kPrintLocked) + " /P " +
                           Reference(pageObject.getObjGen()) + " /Rect [" + PdfNumber(place.left) +
                           " " + PdfNumber(place.bottom) + " " + PdfNumber(place.right) + " " +
                           PdfNumber(place.top) + "] /V " + Reference(signature) + " /AP << /N " +
                           Reference(appearance) + " >> >>");
    AddToPage(update, pageObject, widget);
    AddToForm(update, base, widget);
    return name;
}

std::string SignatureEntries(const StampRequest& request) {
    std::string entries =
        "/Type /Sig /Filter /" + request.filter + " /SubFilter /" + request.subFilter;
    AppendText(entries, "/Name", request.name);
    AppendText(entries, "/Reason", request.reason);
    AppendText(entries, "/Location", request.location);
    AppendText(entries, "/ContactInfo", request.contactInfo);
    if (request.signingTime != 0) {
        entries += " /M " + PdfDate(request.signingTime, request.utcOffsetMinutes);
    }
    return entries;
}
