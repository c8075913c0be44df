#include "fakes/LogHome.h"

#include <cstdlib>
#include <filesystem>

namespace fakes {

namespace {

constexpr char kPrefixVariable[] = "VELMORA_PREFIX";

// A folder for each process, whatever the variable said before: tests run beside each other, and
// each reads its own log.
class LogHome {
public:
    LogHome() {
        std::string folder =
            (std::filesystem::temp_directory_path() / "tesmark-log-XXXXXX").string();
        if (mkdtemp(folder.data()) == nullptr) return;
        m_path = folder;
        setenv(kPrefixVariable, folder.c_str(), 1);
    }
    ~LogHome() {
        std::error_code ignored;
        if (!m_path.empty()) std::filesystem::remove_all(m_path, ignored);
    }

    const std::string& Path() const { return m_path; }

private:
    std::string m_path;
};

const LogHome logHome;

}  // namespace

std::string LogPath() { return logHome.Path() + "/Velmora/ESealLog/Fenmoor.log"; }

}  // namespace fakes
