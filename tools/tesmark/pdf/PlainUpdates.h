// PlainUpdates.h - whether all readers find the same objects in the updates behind a signature.
#pragma once

#include <cstdint>
#include <map>
#include <qpdf/QPDFXRefEntry.hh>

#include "pdf/PdfBase.h"

// qpdf forgives what others don't, who then look for the objects themselves or believe another
// table: what is compared would not be what is shown. So the updates behind the first `end` bytes
// of `base`, which was opened from the bytes of its file, have to be plain: both ends of the file
// (PlainTail.h), every section between them (XrefSection.h) and their chain, which ends at the one
// that the first `end` bytes tell; each entry tells of the object that stands there, and no object,
// in a stream of objects either, and no trailer stands there that its section doesn't name. qpdf
// has to have found the same: `before` is what it found in the first `end` bytes. False too where
// the file could pass for a linearized one of its length.
bool AreUpdatesPlain(CPdfBase& base, std::uint64_t end,
                     const std::map<QPDFObjGen, QPDFXRefEntry>& before);
