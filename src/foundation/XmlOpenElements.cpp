#include "foundation/XmlOpenElements.h"

#include <algorithm>

std::size_t XmlOpenElements::Innermost(std::string_view name) {
    if (m_count > 1 && Top().name == name) return m_count - 1;
    if (!m_isCounting) {
        for (std::size_t i = 1; i < m_count; ++i) CountIn(m_entries[i].name);
        m_isCounting = true;
    }
    if (!m_counts.contains(name)) return 0;
    std::size_t i = m_count - 1;
    while (m_entries[i].name != name) --i;
    return i;
}

void XmlOpenElements::Double() {
    auto larger = std::make_unique<XmlOpenElement[]>(2 * m_capacity);
    std::copy(m_entries, m_entries + m_count, larger.get());
    m_heap = std::move(larger);
    m_entries = m_heap.get();
    m_capacity *= 2;
}

void XmlOpenElements::CountOut(std::string_view name) {
    const auto count = m_counts.find(name);
    if (--count->second == 0) m_counts.erase(count);
}
