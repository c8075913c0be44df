#include "foundation/XmlIndex.h"

#include <algorithm>
#include <cstring>
#include <new>

void XmlIndex::Reset(std::size_t textLength) {
    m_others.clear();
    m_heap.reset();
    m_first = m_few;
    m_capacity = kFew;
    m_count = 0;
    const std::size_t capacity = std::min<std::size_t>(textLength / 64 + 8, kSegment);
    if (capacity > kFew) GrowFirst(static_cast<std::uint32_t>(capacity));
    m_first[Add()] = {};
}

void XmlIndex::Grow() {
    if (m_capacity < kSegment) {
        GrowFirst(std::min(m_capacity + m_capacity / 2, kSegment));
        return;
    }
    // Memory that isn't touched costs nothing.
    m_others.push_back(std::make_unique_for_overwrite<XmlElement[]>(kSegment));
    m_capacity += kSegment;
}

void XmlIndex::GrowFirst(std::uint32_t capacity) {
    // Large memory grows without being copied.
    void* const memory = std::realloc(m_heap.get(), capacity * sizeof(XmlElement));
    if (memory == nullptr) throw std::bad_alloc();
    if (m_heap == nullptr) std::memcpy(memory, m_few, m_count * sizeof(XmlElement));
    static_cast<void>(m_heap.release());
    m_heap.reset(static_cast<XmlElement*>(memory));
    m_first = m_heap.get();
    m_capacity = capacity;
}
