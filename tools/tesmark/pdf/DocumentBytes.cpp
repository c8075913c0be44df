#include "pdf/DocumentBytes.h"

#include <cstring>

CDocumentBytes::CDocumentBytes(const std::string& path) : m_view(path.c_str()) {}

std::string_view CDocumentBytes::Whole() {
    OpenGap();
    return {m_view.Bytes(), m_view.Size()};
}

bool CDocumentBytes::Signed(const PdfSignature& signature, std::string_view& bytes) {
    OpenGap();
    if (signature.end > m_view.Size()) return false;
    m_gap.start = static_cast<std::size_t>(signature.gapStart);
    m_gap.end = static_cast<std::size_t>(signature.gapEnd);
    m_gap.documentEnd = static_cast<std::size_t>(signature.end);
    bytes = CloseGap();
    return true;
}

// The shorter of the two parts moves: that is mostly the one behind the gap, which is little.
bool CDocumentBytes::MovesHead() const { return m_gap.start < m_gap.documentEnd - m_gap.end; }

std::string_view CDocumentBytes::CloseGap() {
    char* const bytes = m_view.Bytes();
    const std::size_t length = m_gap.end - m_gap.start;
    m_gap.content.assign(bytes + m_gap.start, length);
    if (MovesHead()) {
        std::memmove(bytes + length, bytes, m_gap.start);
        return {bytes + length, m_gap.documentEnd - length};
    }
    std::memmove(bytes + m_gap.start, bytes + m_gap.end, m_gap.documentEnd - m_gap.end);
    return {bytes, m_gap.documentEnd - length};
}

void CDocumentBytes::OpenGap() {
    if (m_gap.content.empty()) return;
    char* const bytes = m_view.Bytes();
    const std::size_t length = m_gap.end - m_gap.start;
    if (MovesHead()) {
        std::memmove(bytes, bytes + length, m_gap.start);
    } else {
        std::memmove(bytes + m_gap.end, bytes + m_gap.start, m_gap.documentEnd - m_gap.end);
    }
    m_gap.content.copy(bytes + m_gap.start, length);
    m_gap.content.clear();
}
