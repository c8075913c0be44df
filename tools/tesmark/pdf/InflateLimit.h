// InflateLimit.h - how much the compressed streams of a PDF may become.
#pragma once

#include <cstdint>

// From now on the streams that qpdf decodes in this process, taken together, may become 32 times
// `fileSize` bytes, but at least 16 MiB and at most 256 MiB; behind that they can't be decoded and
// qpdf tells of damage. Decoded are cross-reference streams and streams of objects, whose filters
// may be /FlateDecode with or without a PNG predictor (8 bits), /ASCIIHexDecode and
// /ASCII85Decode: those with /LZWDecode, /RunLengthDecode or another predictor are refused as no
// writer makes them. The count is one for the process: read one PDF at a time.
void LimitInflation(std::uint64_t fileSize);
