// SignatureField.h - a new signature field of a PDF's form, with its widget on a page.
#pragma once

#include <string>

#include "pdf/PdfPage.h"
#include "pdf/PdfStamp.h"
#include "pdf/PdfUpdate.h"

// Throws CPdfFailure kChangesForbidden if a certifying signature (ISO 32000-2, 12.8.2.2) allows
// no changes at all.
void CheckChangesAllowed(CPdfBase& base);

// Adds the widget that shows `appearance` at `place` and holds `signature`, to the page's list of
// annotations and to the form's fields, and makes both where there is none. Of page, catalog,
// list and form it rewrites those objects that it must and no other. Gives the field's name.
// Throws CPdfFailure kDamaged where the base's form is none.
std::string AddSignatureField(CPdfUpdate& update, CPdfBase& base, const PdfPage& page,
                              const SealPlacement& place, QPDFObjGen appearance,
                              QPDFObjGen signature);

// The entries of a signature dictionary but for /ByteRange and /Contents.
std::string SignatureEntries(const StampRequest& request);
