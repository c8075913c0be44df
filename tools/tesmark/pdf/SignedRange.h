// SignedRange.h - what a signature leaves out, checked against the file itself.
#pragma once

#include <cstdint>
#include <fstream>
#include <qpdf/QPDFObjectHandle.hh>

#include "pdf/PdfSignature.h"

// Fills problem, gapStart, gapEnd, end and contents from the dictionary and the bytes of the file.
// `headerOffset` is where "%PDF-" stands.
void ReadSignedRange(QPDFObjectHandle dictionary, std::ifstream& file, std::uint64_t fileSize,
                     std::uint64_t headerOffset, PdfSignature& signature);
