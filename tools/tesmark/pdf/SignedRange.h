// SignedRange.h - what a signature leaves out, checked against the file itself.
#pragma once

#include <cstdint>
#include <qpdf/QPDFObjectHandle.hh>
#include <string_view>

#include "pdf/PdfSignature.h"

// Fills problem, gapStart, gapEnd, end and contents from the dictionary and the bytes of the file.
// `headerOffset` is where "%PDF-" stands, and `objectOffset` where, counted from there, the object
// begins that holds the dictionary; negative for one in an object stream, whose places are none of
// the file's.
void ReadSignedRange(QPDFObjectHandle dictionary, std::string_view file, std::uint64_t headerOffset,
                     qpdf_offset_t objectOffset, PdfSignature& signature);

// Makes a range that was sound an unsound one.
void RefuseRange(PdfSignature& signature, RangeProblem problem);
