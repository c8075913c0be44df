#include "foundation/XmlIndex.h"

#include <cstring>
#include <new>

void XmlIndex::Reset(std::size_t textLength) {
    m_heap.reset();
    m_records = m_few;
    m_capacity = kFew;
    m_count = 0;
    const std::size_t capacity = textLength / 64 + 8;
    if (capacity > kFew) Grow(static_cast<std::uint32_t>(capacity));
    m_records[Add()] = {};
}

void XmlIndex::Grow(std::uint32_t capacity) {
    // Large memory grows without being copied, and what isn't touched of it costs nothing.
    void* const memory = std::realloc(m_heap.get(), std::size_t{capacity} * sizeof(XmlElement));
    if (memory == nullptr) throw std::bad_alloc();
    if (m_heap == nullptr) std::memcpy(memory, m_few, m_count * sizeof(XmlElement));
    static_cast<void>(m_heap.release());
    m_heap.reset(static_cast<XmlElement*>(memory));
    m_records = m_heap.get();
    m_capacity = capacity;
}
