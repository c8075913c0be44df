// PdfSignature.h - a signature that stands in a PDF, and how much of the file it covers.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

// What is wrong with a signature's /ByteRange (ISO 32000-2, 12.8.1). Only with kNone do the bytes
// that are signed deserve to be looked at.
enum class RangeProblem {
    kNone,
    kMissing,    // no /ByteRange, or no /Contents that is a string in the dictionary itself
    kMalformed,  // not four whole numbers, in the dictionary itself, that can be lengths and places
    kNotFromStart,    // bytes in front are not signed
    kOverlapping,     // the second range begins before the first one has ended
    kBeyondFile,      // it tells of bytes that the file doesn't have
    kGapNotContents,  // what is left out is more, less or other than the value of /Contents, or the
                      // dictionary stands in a stream or behind the gap
    kEmptyContents,   // nothing but zeros
    kBehindSignature,  // bytes other than zeros stand behind the signature, where nothing is signed
    kShared,   // another field's signature has the same gap: its value says nothing of either
    kTwoGaps,  // the signed bytes tell of another gap too, where the value would fit as well
    kNotInSignedBytes  // the range doesn't stand, as four numbers, in the bytes that are signed
};

// One English sentence; empty for kNone.
std::string RangeProblemText(RangeProblem problem);

// What was added to the file behind a signature's last byte. Objects are told by their numbers,
// each list in rising order.
struct PdfAddition {
    std::uint64_t bytes = 0;
    bool signature = false;  // a further signature is among it
    // The file up to the signature's end is a PDF by itself, and so the lists can be told.
    bool compared = false;
    std::vector<int> added;
    std::vector<int> changed;
    std::vector<int> removed;
    // Those of the three lists that a further signature doesn't bring with it (FurtherSignature.h
    // tells what one may): of `added` what the signed part refers to already, or a number that it
    // uses. The catalog stands for the trailer too.
    std::vector<int> altered;
};

struct PdfSignature {
    int object = 0;         // the number of its dictionary; 0 if it stands in the field itself
    std::string fieldName;  // the full one, with points between its parts
    // Texts are UTF-8; what the dictionary lacks is empty.
    std::string filter;  // without the slash
    std::string subFilter;
    std::string name;
    std::string reason;
    std::string location;
    std::string time;  // /M as it stands: "D:20261121092127+08'00'"
    int page = 0;      // from 1; 0 where the field tells none, or the page doesn't list its widget
    // Lower left and upper right corner in the page's own units.
    std::array<double, 4> rectangle{};
    // The number and the generation of the field's one widget; 0 where page and rectangle don't
    // tell all of where the signature shows itself, as far as anybody asked (WidgetPages.h).
    int widget = 0;
    int widgetGeneration = 0;
    // For a certifying signature what it allows: 1 nothing, 2 forms, 3 annotations too. Else 0.
    int certifies = 0;

    RangeProblem problem = RangeProblem::kNone;
    // With kNone: the signed bytes are [0, gapStart) and [gapEnd, end).
    std::uint64_t gapStart = 0;
    std::uint64_t gapEnd = 0;
    std::uint64_t end = 0;
    std::string contents;  // DER (or BER), without the zeros behind it
    PdfAddition after;     // bytes 0: the signature covers the whole file
};
