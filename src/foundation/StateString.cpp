#include "foundation/StateString.h"

#include <cstring>
#include <new>
#include <stdexcept>

#include "foundation/StringFailure.h"

namespace {

// What exhausts memory fails as the string type does.
template <typename Work>
void OrOutOfMemory(Work work) {
    try {
        work();
    } catch (const std::bad_alloc&) {
        throw StringFailure(StringFailure::kOutOfMemory);
    } catch (const std::length_error&) {
        throw StringFailure(StringFailure::kOutOfMemory);
    }
}

}  // namespace

std::string StateString::Text() const {
    const std::string_view view = View();
    return std::string(view.substr(0, view.find('\0')));
}

void StateString::Assign(std::string_view bytes) {
    OrOutOfMemory([&] { m_bytes.assign(bytes); });
    m_length = m_bytes.size();
}

void StateString::AssignFromHost(const void* bytes, int length) {
    if (length < 0 || (bytes == nullptr && length != 0)) {
        throw StringFailure(StringFailure::kInvalidArgument);
    }
    Assign({static_cast<const char*>(bytes), static_cast<std::size_t>(length)});
}

void StateString::AssignText(const char* text) { Assign(text != nullptr ? text : ""); }

void StateString::Clear() { Assign({}); }

void StateString::CutAtZeroByte() { m_length = std::strlen(m_bytes.c_str()); }

void StateString::CopyTo(unsigned char* out, int length) {
    if (length < 0) throw StringFailure(StringFailure::kInvalidArgument);
    const auto wanted = static_cast<std::size_t>(length);
    if (m_bytes.size() < wanted) OrOutOfMemory([&] { m_bytes.resize(wanted); });
    std::memcpy(out, m_bytes.data(), wanted);
}
