// StringFailure.h - the failure of an exhausted or impossible string operation.
#pragma once

#include <cstdint>

// Thrown through the exports to the host; no frame of the library catches it.
class StringFailure {
public:
    static constexpr std::uint32_t kInvalidArgument = 0x80070057;
    static constexpr std::uint32_t kGeneral = 0x80004005;
    static constexpr std::uint32_t kOutOfMemory = 0x8007000E;

    explicit StringFailure(std::uint32_t value) : m_value(value) {}
    std::uint32_t Value() const { return m_value; }

private:
    std::uint32_t m_value;
};

// A length as the host gave it. Throws kInvalidArgument for a negative one.
inline unsigned int CheckedLength(int length) {
    if (length < 0) throw StringFailure(StringFailure::kInvalidArgument);
    return static_cast<unsigned int>(length);
}
