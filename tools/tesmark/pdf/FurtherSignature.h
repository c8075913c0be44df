// FurtherSignature.h - what a further signature may change in a signed PDF.
#pragma once

#include <map>
#include <qpdf/QPDF.hh>
#include <set>
#include <string>

#include "pdf/PdfReferences.h"

// Judges each change of an object of the signed revision. What may change, and why no page of the
// revision shows or means anything else by it:
// - The catalog: /AcroForm and /DSS as below; /Extensions, which tells of versions.
// - The catalog's /DSS, which tells of certificates and revocation, and its lists and /VRI, as
//   SecurityStore.h says. Nothing else may refer to them.
// - The form: /Fields grows by fields of further signatures, /SigFlags tells of them. /DR and /DA
//   may come where there were none, if no field or text of the revision would take them.
// - A page: /Annots grows by their widgets.
// - An array: only a list that is such an /Annots or /Fields and nothing else.
// - An empty signature field that a further signature fills: its value, appearance and flags. It
//   has to serve as a field only.
// - What the trailer's /Info refers to, if nothing else does, and it holds texts alone; the
//   catalog's XMP metadata, if nothing else refers to it. Both are shown by no page.
// A further signature is one of `signatures`; its field and its widget are new objects, refer to
// nothing that acts, and it has one widget, which tells its page. That widget may cover what
// stands below: the signature's own page and rectangle tell where.
// Anything else, and anything unknown, is none of these.
class CFurtherSignature {
public:
    // `signatures` are the objects of those that were made behind the revision and whose range is
    // sound. All arguments must outlive the object.
    CFurtherSignature(QPDF& revision, const CPdfReferences& references,
                      const std::set<int>& signatures);

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

    const CPdfReferences& m_references;
    const std::set<int>& m_signatures;
    QPDFObjGen m_catalog;
    std::set<int> m_numbers;
    std::map<QPDFObjGen, QPDFObjGen> m_widgets;  // of each further signature
};
