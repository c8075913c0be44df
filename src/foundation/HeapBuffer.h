// HeapBuffer.h - a buffer of the C heap, for memory that crosses the library's boundary.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <string_view>
#include <utility>

// Owns what malloc gave, all bytes zero to begin with. Empty after a failed allocation.
class CBuffer {
public:
    CBuffer() = default;
    explicit CBuffer(std::size_t size)
        : m_bytes(static_cast<unsigned char*>(std::calloc(size, 1))) {}
    CBuffer(CBuffer&& other) noexcept
        : m_bytes(std::exchange(other.m_bytes, nullptr)),
          m_length(std::exchange(other.m_length, 0)) {}
    CBuffer& operator=(CBuffer&& other) noexcept {
        std::swap(m_bytes, other.m_bytes);
        std::swap(m_length, other.m_length);
        return *this;
    }
    ~CBuffer() { std::free(m_bytes); }

    explicit operator bool() const { return m_bytes != nullptr; }
    unsigned char* Data() const { return m_bytes; }
    char* Text() const { return reinterpret_cast<char*>(m_bytes); }

    // The number of bytes that mean something, which the callee of a two-step call reports.
    int Length() const { return m_length; }
    int* LengthPointer() { return &m_length; }
    std::string_view View() const { return {Text(), static_cast<std::size_t>(m_length)}; }

    // Hands the memory over to somebody who frees it with free().
    unsigned char* Release() {
        m_length = 0;
        return std::exchange(m_bytes, nullptr);
    }

private:
    unsigned char* m_bytes = nullptr;
    int m_length = 0;
};
