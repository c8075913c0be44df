// PdfChanges.h - what incremental updates did to a PDF after a signature.
#pragma once

#include <string>
#include <vector>

#include "pdf/PdfBase.h"
#include "pdf/PdfSignature.h"

// Compares the objects of the file with those of its first `end` bytes, and fills the lists of
// `addition`. Reads these bytes, and all their objects, into memory. Where they are no PDF by
// themselves, nothing is filled and `compared` stays false. An object that is read anew but says
// the same isn't changed. `signatures` are all that were found in the file, their ranges checked.
void CompareWithRevision(CPdfBase& base, const std::string& path, std::uint64_t end,
                         const std::vector<PdfSignature>& signatures, PdfAddition& addition);
