#include "pdf/DocumentBytes.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "platform/Files.h"
#include "platform/Memory.h"

namespace {

// Between two pieces the reading can be broken off.
constexpr std::size_t kPiece = 1024 * 1024;

// 0 for what can't be read in one go; a pipe would never end.
std::uint64_t SizeOf(const std::string& path) {
    const std::string text = platform::Utf8FromPath(path);
    const std::filesystem::path file(std::u8string(text.begin(), text.end()));
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) return 0;
    const auto size = std::filesystem::file_size(file, error);
    return error ? 0 : size;
}

}  // namespace

CDocumentBytes::CDocumentBytes(std::string path, std::uint64_t limit) {
    const std::uint64_t size = SizeOf(path);
    if (size == 0 || size > limit) return;
    m_size = static_cast<std::size_t>(size);
    // Not filled: the first touch of the memory is the thread's, as it reads.
    m_bytes.reset(new char[m_size]);
    platform::ExpectToBeWritten(m_bytes.get(), m_size);
    m_reading = std::async(std::launch::async | std::launch::deferred,
                           [this, path = std::move(path)] { Read(path); });
}

CDocumentBytes::~CDocumentBytes() { m_stopped = true; }

void CDocumentBytes::Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::size_t read = 0;
    while (file && read < m_size && !m_stopped) {
        const std::size_t piece = std::min(kPiece, m_size - read);
        file.read(m_bytes.get() + read, static_cast<std::streamsize>(piece));
        read += static_cast<std::size_t>(file.gcount());
    }
    m_size = read;
}

bool CDocumentBytes::Signed(const PdfSignature& signature, std::string_view& bytes) {
    if (m_reading.valid()) m_reading.get();
    OpenGap();
    if (signature.end > m_size) return false;
    m_gap.start = static_cast<std::size_t>(signature.gapStart);
    m_gap.end = static_cast<std::size_t>(signature.gapEnd);
    m_gap.documentEnd = static_cast<std::size_t>(signature.end);
    bytes = CloseGap();
    return true;
}

// The shorter of the two parts moves: that is mostly the one behind the gap, which is little.
bool CDocumentBytes::MovesHead() const { return m_gap.start < m_gap.documentEnd - m_gap.end; }

std::string_view CDocumentBytes::CloseGap() {
    char* const bytes = m_bytes.get();
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
    char* const bytes = m_bytes.get();
    const std::size_t length = m_gap.end - m_gap.start;
    if (MovesHead()) {
        std::memmove(bytes, bytes + length, m_gap.start);
    } else {
        std::memmove(bytes + m_gap.end, bytes + m_gap.start, m_gap.documentEnd - m_gap.end);
    }
    m_gap.content.copy(bytes + m_gap.start, length);
    m_gap.content.clear();
}
