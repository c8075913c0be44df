// PdfChanges.h - what incremental updates did to a PDF after a signature.
#pragma once

#include <string_view>
#include <vector>

#include "pdf/PdfBase.h"
#include "pdf/PdfSignature.h"

// Compares the objects of `base` with those of `revision`, the bytes at the start of its file that
// a signature covers, and fills the lists of `addition`. Reads all their objects into memory. Where
// they are no PDF by themselves, or an object of theirs can't be read, or readers may find other
// objects in the updates than qpdf does (PlainUpdates.h), nothing is filled and `compared` stays
// false. An object that is read anew but says the same isn't changed. `signatures`
// are all that were found in the file, their ranges checked.
void CompareWithRevision(CPdfBase& base, std::string_view revision,
                         const std::vector<PdfSignature>& signatures, PdfAddition& addition);
