// FileView.h - a file's bytes as memory, without a copy of them.
#pragma once

#include <cstddef>

namespace platform {

// Shows a file as it is when its bytes are first looked at. What is written into the view stays in
// it: the file isn't changed, and only the pages that were written to take memory. What others
// write into the file meanwhile may or may not be seen. Where a file can be cut that somebody looks
// at (on Linux), the system ends the process that looks behind the new end.
class FileView {
public:
    // `path` has to name a regular file.
    explicit FileView(const char* path);
    ~FileView();
    FileView(const FileView&) = delete;
    FileView& operator=(const FileView&) = delete;

    // False if it can't be read. An empty file can; it has no bytes.
    bool IsOpen() const { return m_isOpen; }
    char* Bytes() const { return m_bytes; }
    std::size_t Size() const { return m_size; }

private:
    bool m_isOpen = false;
    char* m_bytes = nullptr;
    std::size_t m_size = 0;
};

}  // namespace platform
