// XmlOpenElements.h - the elements that a reader is inside of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string_view>

struct XmlOpenElement {
    std::uint32_t element;
    std::uint32_t lastChild;  // 0 for none
    std::uint32_t nameLength;
    const char* name;

    std::string_view Name() const { return {name, nameLength}; }
};

// A stack, at whose bottom the document itself stands under an empty name. Names must outlive it.
class XmlOpenElements {
public:
    XmlOpenElements() { *m_top = {0, 0, 0, nullptr}; }
    XmlOpenElements(const XmlOpenElements&) = delete;
    XmlOpenElements& operator=(const XmlOpenElements&) = delete;

    // The place of the top; 0 if only the document is open.
    std::size_t Last() const { return static_cast<std::size_t>(m_top - m_entries); }
    XmlOpenElement& operator[](std::size_t i) { return m_entries[i]; }
    XmlOpenElement& Top() { return *m_top; }

    void Push(const XmlOpenElement& entry) {
        if (++m_top == m_end) Double();
        *m_top = entry;
        if (m_isCounting) CountIn(entry.Name());
    }
    void Pop() {
        if (m_isCounting) CountOut(m_top->Name());
        --m_top;
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
    XmlOpenElement* m_end = m_first + kFirstRoom;
    XmlOpenElement* m_top = m_first;
    bool m_isCounting = false;
    std::map<std::string_view, std::size_t> m_counts;
};
