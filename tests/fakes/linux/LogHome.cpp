#include "fakes/LogHome.h"

#include <cstdlib>
#include <filesystem>

namespace fakes {

namespace {

constexpr char kPrefixVariable[] = "VELMORA_PREFIX";

class LogHome {
public:
    LogHome() {
        if (const char* const given = std::getenv(kPrefixVariable)) {
            m_path = given;
            return;
        }
        std::string folder =
            (std::filesystem::temp_directory_path() / "tesmark-log-XXXXXX").string();
        if (mkdtemp(folder.data()) == nullptr) return;
        m_path = m_made = folder;
        setenv(kPrefixVariable, folder.c_str(), 1);
    }
    ~LogHome() {
        std::error_code ignored;
        if (!m_made.empty()) std::filesystem::remove_all(m_made, ignored);
    }

    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
    std::string m_made;
};

const LogHome logHome;

}  // namespace

std::string LogPath() { return logHome.Path() + "/Velmora/ESealLog/Fenmoor.log"; }

}  // namespace fakes
