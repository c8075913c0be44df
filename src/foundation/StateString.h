// StateString.h - the string in which module state is kept: a length apart from its storage.
#pragma once

#include <string>
#include <string_view>

// Holds bytes, zero bytes included. The length can be cut at the first zero byte while the stored
// contents stay, and a host may ask for more bytes than the length: those behind the cut come back
// as they were stored, bytes never stored as zero. Memory that can't be had throws
// StringFailure::kOutOfMemory and leaves the string as it was.
class StateString {
public:
    bool Empty() const { return m_length == 0; }
    int Length() const { return static_cast<int>(m_length); }
    // The bytes up to the length.
    std::string_view View() const { return {m_bytes.data(), m_length}; }
    // The text up to its first zero byte, or up to the length if there is none before it.
    std::string Text() const;

    void Assign(std::string_view bytes);
    // As Assign, for a pointer and length of the host. A null pointer with a length other than 0,
    // or a negative length, throws StringFailure::kInvalidArgument and leaves the string as it was.
    void AssignFromHost(const void* bytes, int length);
    // A terminated text; null makes the string empty.
    void AssignText(const char* text);
    void Clear();

    // Sets the length to that of the contents up to their first zero byte.
    void CutAtZeroByte();

    // Copies exactly `length` bytes of the storage, which grows by zero bytes as needed. A negative
    // length throws StringFailure::kInvalidArgument.
    void CopyTo(unsigned char* out, int length);

private:
    std::string m_bytes;
    std::size_t m_length = 0;
};
