#include "platform/FileView.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

FileView::FileView(const char* path) {
    // A pipe would wait for its other end.
    const int file = open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (file < 0) return;
    struct stat status {};
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode)) {
        const auto size = static_cast<std::size_t>(status.st_size);
        void* const bytes =
            size ? mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_NORESERVE, file, 0)
                 : nullptr;
        m_isOpen = bytes != MAP_FAILED;
        if (m_isOpen) {
            m_bytes = static_cast<char*>(bytes);
            m_size = size;
        }
    }
    close(file);
}

FileView::~FileView() {
    if (m_bytes) munmap(m_bytes, m_size);
}

}  // namespace platform
