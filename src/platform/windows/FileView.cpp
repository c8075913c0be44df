#include "platform/FileView.h"

#include "platform/windows/Win32.h"

namespace platform {

namespace {

// Null if it can't be shown.
char* Show(HANDLE file) {
    const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_WRITECOPY, 0, 0, nullptr);
    if (!mapping) return nullptr;
    // The view keeps the mapping, and the mapping the file.
    void* const bytes = MapViewOfFile(mapping, FILE_MAP_COPY, 0, 0, 0);
    CloseHandle(mapping);
    return static_cast<char*>(bytes);
}

}  // namespace

FileView::FileView(const char* path) {
    const HANDLE file =
        CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) return;
    LARGE_INTEGER size{};
    if (GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &size)) {
        m_size = static_cast<std::size_t>(size.QuadPart);
        m_bytes = m_size ? Show(file) : nullptr;
        m_isOpen = m_bytes || !m_size;
        if (!m_isOpen) m_size = 0;
    }
    CloseHandle(file);
}

FileView::~FileView() {
    if (m_bytes) UnmapViewOfFile(m_bytes);
}

}  // namespace platform
