// XmlOpenElements.h - the elements that a reader is inside of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

struct XmlOpenElement {
    std::uint32_t element = 0;
    std::uint32_t lastChild = 0;
    std::string_view name;
};

// A stack, at whose bottom the document itself stands under an empty name. Names must outlive it.
class XmlOpenElements {
public:
    XmlOpenElements() { m_entries[m_count++] = {}; }
    XmlOpenElements(const XmlOpenElements&) = delete;
    XmlOpenElements& operator=(const XmlOpenElements&) = delete;

    // The document included.
    std::size_t Count() const { return m_count; }
    XmlOpenElement& operator[](std::size_t i) { return m_entries[i]; }
    XmlOpenElement& Top() { return m_entries[m_count - 1]; }

    void Push(const XmlOpenElement& entry) {
        if (m_count == m_capacity) Double();
        m_entries[m_count++] = entry;
        if (m_isCounting) CountIn(entry.name);
    }
    void Pop() {
        --m_count;
        if (m_isCounting) CountOut(m_entries[m_count].name);
    }

    // The place of the innermost element of that name, 0 if none is open. Takes no longer than
    // going out to it, and, if none is open, than the logarithm of their number: names are counted
    // from the first question on.
    std::size_t Innermost(std::string_view name);

private:
    void Double();
    void CountIn(std::string_view name) { ++m_counts[name]; }
    void CountOut(std::string_view name);

    static constexpr std::size_t kFirstRoom = 1 + 7;

    XmlOpenElement m_first[kFirstRoom];
    std::unique_ptr<XmlOpenElement[]> m_heap;
    XmlOpenElement* m_entries = m_first;
    std::size_t m_capacity = kFirstRoom;
    std::size_t m_count = 0;
    bool m_isCounting = false;
    std::map<std::string_view, std::size_t> m_counts;
};
