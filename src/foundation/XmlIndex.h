// XmlIndex.h - the elements of an XML text, as records that point into it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

// One element. Offsets and lengths are bytes of the text; elements are told by their indices in the
// index, 0 meaning none, or the document as a parent.
struct XmlElement {
    static constexpr std::uint32_t kWithoutEndTag = 0x100000;
    static constexpr std::uint32_t kIllFormedBelow = 0x200000;
    static constexpr std::uint32_t kIllFormedDocument = 0x800000;  // in the document's record
    // Hints for speed, on elements whose tags' lengths are the true ones; each may be missing where
    // it would hold.
    static constexpr std::uint32_t kOnlyName = 0x1000000;     // nothing else in the start tag
    static constexpr std::uint32_t kOnlyText = 0x2000000;     // no "<" inside
    static constexpr std::uint32_t kNoReference = 0x4000000;  // no "&" inside

    std::uint32_t start;   // the start tag's "<"
    std::uint32_t length;  // through the end tag; the start tag's if there is none
    // The start tag's length in the low 22 bits, the end tag's in the high 10. A length that is too
    // large stands there as the largest number: XmlTags.h tells the true ones.
    std::uint32_t tagLengths;
    std::uint32_t flags;
    std::uint32_t parent;
    std::uint32_t firstChild;
    std::uint32_t nextSibling;
    std::uint32_t previousSibling;  // of a first child the parent's last child
};

// The records, one behind the other. Record 0 stands for the document. A reference to a record
// holds until the next Add.
class XmlIndex {
public:
    XmlIndex() { Reset(0); }
    XmlIndex(const XmlIndex&) = delete;
    XmlIndex& operator=(const XmlIndex&) = delete;

    // Leaves the document's record only, and room for as many elements as a text of that length
    // seldom exceeds. All memory of a parse is taken here and in Add.
    void Reset(std::size_t textLength);

    // The next free index.
    std::uint32_t Count() const { return m_count; }

    // Takes the next free index for a record, which stays unwritten.
    std::uint32_t Add() {
        if (m_count == m_capacity) Grow(m_capacity + m_capacity / 2);
        return m_count++;
    }

    // Of indices below Count() only.
    XmlElement& operator[](std::uint32_t i) { return m_records[i]; }
    const XmlElement& operator[](std::uint32_t i) const { return m_records[i]; }

private:
    static constexpr std::uint32_t kFew = 16;

    struct Free {
        void operator()(void* memory) const { std::free(memory); }
    };

    void Grow(std::uint32_t capacity);

    std::uint32_t m_count = 0;
    std::uint32_t m_capacity = 0;
    XmlElement* m_records = nullptr;
    std::unique_ptr<XmlElement[], Free> m_heap;
    XmlElement m_few[kFew];  // the records of a small document
};
