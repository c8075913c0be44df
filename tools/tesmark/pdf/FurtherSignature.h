// FurtherSignature.h - what a further signature may change in a signed PDF.
#pragma once

#include <map>
#include <qpdf/QPDF.hh>
#include <set>
#include <string>

#include "pdf/PdfReferences.h"

// By the numbers of their objects, with the widget of each: the one whose page and rectangle are
// told, or 0 0 where these don't tell all of where the signature shows itself.
using FurtherSignatures = std::map<int, QPDFObjGen>;

// Judges each change of an object of the signed revision. What may change, and why no page of the
// revision shows or means anything else by it:
// - The catalog: /AcroForm and /DSS as below; /Extensions, which tells of versions.
// - The catalog's /DSS, which tells of certificates and revocation, and its lists and /VRI, as
//   SecurityStore.h says. Nothing else may refer to them.
// - The form: /Fields grows by fields of further signatures, /SigFlags tells of them. /DR and /DA
//   may come where there were none, if no field or text of the revision would take them.
// - A page: /Annots grows by their widgets.
// - An array: only a list that is such an /Annots or /Fields and nothing else.
// - An empty signature field that a further signature fills: its value, and the appearance and
//   flags of its one widget. Both have to serve as field and widget only.
// - What the trailer's /Info refers to, if nothing else does, and it holds texts alone; the
//   catalog's XMP metadata, if nothing else refers to it. Both are shown by no page.
// A further signature is one of `signatures`; a field and a widget that come with it are new
// objects, refer to nothing that acts, and the widget tells its page. It has one widget, on one
// page, which may cover what stands below: the signature's own page and rectangle tell where.
// Another widget, wherever it stands, isn't its widget.
// Anything else, and anything unknown, is none of these.
class CFurtherSignature {
public:
    // `signatures` are the objects of those that were made behind the revision and whose range is
    // sound. All arguments must outlive the object.
    CFurtherSignature(QPDF& revision, const CPdfReferences& references,
                      const FurtherSignatures& signatures);

    // Both have the number `number`, and differ.
    bool Brings(QPDFObjGen number, QPDFObjectHandle before, QPDFObjectHandle now);
    // Some object of the revision has that number, under whatever generation.
    bool IsOfRevision(int number) const { return m_numbers.contains(number); }

private:
    bool CatalogGrew(QPDFObjectHandle before, QPDFObjectHandle now);
    bool FormGrew(QPDFObjectHandle before, QPDFObjectHandle now);
    bool FieldsGrew(QPDFObjectHandle before, QPDFObjectHandle now);
    bool AnnotationsGrew(QPDFObjectHandle before, QPDFObjectHandle now, QPDFObjGen page);
    bool ListGrew(QPDFObjGen number, QPDFObjectHandle before, QPDFObjectHandle now);
    bool FieldWasSigned(QPDFObjGen number, QPDFObjectHandle before, QPDFObjectHandle now);
    bool IsNew(QPDFObjectHandle object) const;
    bool IsNewField(QPDFObjectHandle field);
    bool IsNewWidget(QPDFObjectHandle widget, QPDFObjGen page);
    // The field's value is one of the further signatures.
    bool IsSigned(QPDFObjectHandle field) const;
    // The widget of the signature that is the field's value; 0 0 without one.
    QPDFObjGen ToldWidget(QPDFObjectHandle field) const;

    const CPdfReferences& m_references;
    const FurtherSignatures& m_signatures;
    QPDFObjGen m_catalog;
    std::set<int> m_numbers;
};
