#include "pdf/LinearizedStart.h"

#include "pdf/PdfCursor.h"

LinearizedStart ReadLinearizedStart(std::string_view document) {
    constexpr LinearizedStart kNotPlain{0, 0, false};
    // The header is a comment itself.
    CPdfCursor cursor(document, 0);
    cursor.SkipBlanksAndComments();
    int number = 0;
    int generation = 0;
    if (!cursor.TakeObjectHeader(number, generation)) return kNotPlain;
    cursor.SkipBlanksAndComments();
    CPdfCursor other = cursor;
    if (!other.Take("<<")) return {};
    PdfEntries entries;
    LinearizedStart start;
    if (!cursor.TakeDictionary(entries)) return kNotPlain;
    if (!entries.contains("Linearized")) return {};
    if (!ReadPdfInteger(entries["L"], start.length)) return kNotPlain;
    cursor.SkipBlanks();
    if (cursor.Take("endobj")) {
        cursor.SkipBlanks();
        start.section = cursor.At();
    }
    return start;
}
