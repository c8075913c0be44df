#include "fakes/LogHome.h"

#include "platform/Files.h"

namespace fakes {

namespace {

// The system fixes the place: the test's user has one log, and programs of tests run one at a time.
class LogHome {
public:
    LogHome() { Remove(); }
    ~LogHome() { Remove(); }

    const std::string& Path() const { return m_path; }

private:
    void Remove() const {
        platform::RemoveFile(m_path.c_str());
        platform::RemoveFile((m_path + "1").c_str());
    }

    const std::string m_path = platform::UserDataFolder() + "ESealLog\\Fenmoor.log";
};

const LogHome logHome;

}  // namespace

std::string LogPath() { return logHome.Path(); }

}  // namespace fakes
