// RangeBinding.h - that a signature's value can't be moved to another place of the file.
#pragma once

#include <string_view>
#include <vector>

#include "pdf/PdfSignature.h"

// A digest is over the bytes on both sides of the gap and so doesn't tell where between them the
// gap was: a file prepared with a second signature dictionary reads as another document, with the
// same signed bytes, once the value is put there. Each sound range has therefore to stand as
// "/ByteRange [0 b c d]" in the bytes that it signs, and no other one of as many bytes (b + d) may:
// of all files with these signed bytes at most one is then accepted. Ranges that aren't so become
// kNotInSignedBytes and kTwoGaps. Blanks and comments may stand between the words, and the name may
// be written with "#"; from "/" to "]" it may take 256 bytes.
//
// Reads the file once, whatever the number of signatures. False if so many such arrays stand in it
// (10000) that somebody has filled it with them.
bool CheckRangeBinding(std::string_view file, std::vector<PdfSignature>& signatures);
