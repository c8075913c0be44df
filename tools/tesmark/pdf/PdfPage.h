// PdfPage.h - one page of a base file.
#pragma once

#include <map>

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

// The numbers of pages that are known by their objects. However many are asked for, and whatever
// the tree says, each list of kids is gone through once, and a million kids at most.
class CPageNumbers {
public:
    // `base` must outlive it.
    explicit CPageNumbers(CPdfBase& base) : m_base(base) {}

    // From 1; 0 if it isn't to be found on the way up the tree from it. Reads the nodes above it
    // and beside these, never another page of a flat list. Throws CPdfFailure: kDamaged.
    int Of(QPDFObjectHandle page);

private:
    // The kids of a node as far as anybody asked for one of them.
    struct Kids {
        bool flat = false;  // each is one page
        int next = 0;
        long long pages = 0;  // before the last one that was gone through
        std::map<QPDFObjGen, long long> pagesBefore;
    };

    long long PagesBefore(QPDFObjectHandle node, QPDFObjGen kid);

    CPdfBase& m_base;
    std::map<QPDFObjGen, Kids> m_nodes;
    int m_kidsLeft = 1'000'000;
};
