#include "foundation/XmlOpenElements.h"

#include <algorithm>

std::size_t XmlOpenElements::Innermost(std::string_view name) {
    std::size_t place = Last();
    if (place != 0 && Top().Name() == name) return place;
    if (!m_isCounting) {
        for (std::size_t i = 1; i <= place; ++i) CountIn(m_entries[i].Name());
        m_isCounting = true;
    }
    if (!m_counts.contains(name)) return 0;
    while (m_entries[place].Name() != name) --place;
    return place;
}

// With the top already behind the last entry.
void XmlOpenElements::Double() {
    const auto count = static_cast<std::size_t>(m_end - m_entries);
    auto larger = std::make_unique_for_overwrite<XmlOpenElement[]>(2 * count);
    std::copy(m_entries, m_end, larger.get());
    m_heap = std::move(larger);
    m_entries = m_heap.get();
    m_end = m_entries + 2 * count;
    m_top = m_entries + count;
}

void XmlOpenElements::CountOut(std::string_view name) {
    const auto count = m_counts.find(name);
    if (--count->second == 0) m_counts.erase(count);
}
