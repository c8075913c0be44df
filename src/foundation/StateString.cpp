#include "foundation/StateString.h"

#include <cstring>

#include "foundation/StringFailure.h"

std::string StateString::Text() const {
    const std::string_view view = View();
    return std::string(view.substr(0, view.find('\0')));
}

void StateString::Assign(std::string_view bytes) {
    m_bytes.assign(bytes);
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
    if (m_bytes.size() < wanted) m_bytes.resize(wanted);
    std::memcpy(out, m_bytes.data(), wanted);
}
