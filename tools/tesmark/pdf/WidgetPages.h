// WidgetPages.h - on which page of a PDF the widget of a signature stands.
#pragma once

#include <array>
#include <vector>

#include "pdf/PdfPage.h"
#include "pdf/PdfSignature.h"

// Takes the widget's word for its page (/P), if that page lists it: reads no other page.
class CWidgetPages {
public:
    // `base` must outlive it.
    explicit CWidgetPages(CPdfBase& base) : m_numbers(base) {}

    // From 1; 0 if its page isn't in the tree, or doesn't list the widget though `rectangle` has an
    // area. Throws CPdfFailure: kDamaged.
    int PageOf(QPDFObjectHandle widget, const std::array<double, 4>& rectangle);

private:
    bool Lists(QPDFObjectHandle page, QPDFObjGen widget);

    CPageNumbers m_numbers;
    int m_itemsLeft = 5'000'000;  // of lists of annotations
};

// Takes nobody's word but goes through all pages: sets the page of each signature whose widget is
// listed just once to that one, and sets `widget` to 0 where it is listed several times, as it is
// on a page that stands in the tree twice. A widget that no page lists keeps what it tells: nothing
// shows it. Where the tree, a page of it or more than five million kids and annotations can't be
// followed, no `widget` is left. Throws CPdfFailure for what was read before.
void CheckPages(CPdfBase& base, std::vector<PdfSignature>& signatures);
