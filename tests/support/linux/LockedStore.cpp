#include "support/LockedStore.h"

#include <filesystem>

// Rights would not keep the superuser out; a folder of the file's name does.
LockedStore::LockedStore(const TemporaryPrefix& prefix) : m_file(prefix.Below("machine.reg")) {
    std::error_code absent;
    std::filesystem::rename(m_file, m_file + ".away", absent);
    std::filesystem::create_directory(m_file);
}

LockedStore::~LockedStore() {
    std::error_code absent;
    std::filesystem::remove(m_file, absent);
    std::filesystem::rename(m_file + ".away", m_file, absent);
}
