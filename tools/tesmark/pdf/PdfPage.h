// PdfPage.h - one page of a base file.
#pragma once

#include "pdf/PdfBase.h"
#include "pdf/SealPlacement.h"

struct PdfPage {
    QPDFObjectHandle page;  // indirect, a dictionary
    PageGeometry geometry;
    int number = 0;  // from 1
    int pageCount = 0;
};

// Descends the page tree by its counts, reading no more of it than it must. `number` counts from
// 1, or from the end (-1 is the last). Throws CPdfFailure: kNoSuchPage, kDamaged.
PdfPage FindPdfPage(CPdfBase& base, int number);
// What the catalog says, without a look at the tree.
int PdfPageCount(CPdfBase& base);
// The number of a page that is known by its object, from 1; 0 if it isn't to be found on the way up
// the tree from it. Reads the nodes above it and beside these, never another page of a flat list.
int PdfPageNumber(CPdfBase& base, QPDFObjectHandle page);
