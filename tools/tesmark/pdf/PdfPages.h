// PdfPages.h - how many pages a PDF has, and how large one of them is to its reader.
#pragma once

#include <string>

#include "pdf/PdfStamp.h"

struct PdfPageSize {
    int page = 0;  // counted from 1
    int pageCount = 0;
    // As a reader sees it: turned, cropped, scaled.
    double widthMm = 0;
    double heightMm = 0;
};

// Measures page `page` (from 1, or from the end: -1 is the last). kNone with `size` filled, or the
// error that StampPdf would give, with its sentence in `message`; for kNoSuchPage
// `size.pageCount` is told. Encrypted files are refused here too.
StampError MeasurePdfPage(const std::string& path, int page, PdfPageSize& size,
                          std::string& message);
