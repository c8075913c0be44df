// XmlElements.h - what an index says of its text, for tests and the fuzz target.
#pragma once

#include <string>
#include <string_view>

#include "foundation/XmlCharacters.h"
#include "foundation/XmlIndex.h"
#include "foundation/XmlTags.h"

// The names in their order, children in brackets behind their parent, "!" behind an element without
// end tag: "A(B C!)".
inline std::string ElementsOf(const std::string& text, const XmlIndex& index,
                              std::uint32_t parent = 0) {
    std::string elements;
    for (std::uint32_t i = index[parent].firstChild; i != 0; i = index[i].nextSibling) {
        if (!elements.empty()) elements += ' ';
        elements += XmlNameAtFront(std::string_view(text).substr(index[i].start + 1));
        if ((index[i].flags & XmlElement::kWithoutEndTag) != 0) elements += '!';
        if (index[i].firstChild != 0) elements += '(' + ElementsOf(text, index, i) + ')';
    }
    return elements;
}

// What is wrong with one record, `from` being where it may begin at the earliest and `limit` where
// it must end at the latest; null if nothing is.
inline const char* FaultOfElement(const std::string& text, const XmlIndex& index, std::uint32_t i,
                                  std::size_t from, std::size_t limit) {
    const XmlElement& element = index[i];
    if (element.start < from || element.length > limit - element.start) return "outside its place";
    if (text[element.start] != '<') return "no tag";
    const std::size_t startTag = XmlStartTagLength(text, element);
    if (startTag < 3 || startTag > element.length) return "start tag's length";
    if (text[element.start + startTag - 1] != '>') return "start tag's end";
    if (startTag == element.length) return element.firstChild != 0 ? "children in a tag" : nullptr;
    if (text[element.start + element.length - 1] != '>') return "end tag's end";
    if ((element.flags & XmlElement::kWithoutEndTag) != 0) return "end tag of none";
    return nullptr;
}

// Goes through all records by their links; null if every one is where its text is, and is met once.
inline const char* FaultOfIndex(const std::string& text, const XmlIndex& index) {
    std::uint32_t met = 1;
    std::uint32_t parent = 0;
    std::uint32_t previous = 0;
    std::uint32_t i = index[0].firstChild;
    for (;;) {
        while (i == 0 && parent != 0) {
            if (index[index[parent].firstChild].previousSibling != previous && previous != 0) {
                return "last child";
            }
            previous = parent;
            i = index[parent].nextSibling;
            parent = index[parent].parent;
        }
        if (i == 0) return met == index.Count() ? nullptr : "an element that can't be reached";
        const XmlElement& outer = index[parent];
        const std::size_t from =
            previous != 0 ? index[previous].start + index[previous].length
                          : (parent != 0 ? outer.start + XmlStartTagLength(text, outer) : 0);
        const std::size_t limit = parent != 0 ? outer.start + outer.length : text.size();
        if (const char* const fault = FaultOfElement(text, index, i, from, limit)) return fault;
        if (++met > index.Count()) return "an element that is met twice";
        if (index[i].parent != parent) return "parent";
        if (previous != 0 && index[i].previousSibling != previous) return "previous sibling";
        parent = i;
        previous = 0;
        i = index[i].firstChild;
    }
}
