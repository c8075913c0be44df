#include "support/TemporaryFolder.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <stdexcept>

#include "platform/Files.h"

namespace {

std::string MakeFolder() {
    std::random_device random;
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::filesystem::path path =
            std::filesystem::temp_directory_path() / ("velmora-" + std::to_string(random()));
        if (std::filesystem::create_directory(path)) return path.string();
    }
    throw std::runtime_error("the test's folder can't be made");
}

}  // namespace

TemporaryFolder::TemporaryFolder() : m_path(MakeFolder()) {}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::string TemporaryFolder::Below(const std::string& name) const {
    std::string path = name;
    std::replace(path.begin(), path.end(), '/', platform::PathSeparator());
    return m_path + platform::PathSeparator() + path;
}
