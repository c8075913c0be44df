#include "foundation/LogFolder.h"

#include "platform/Files.h"

namespace {

std::string Made(std::string folder) {
    return platform::MakeDirectoryPath(folder.c_str()) ? folder : "";
}

}  // namespace

std::string GetAppDataFolder() {
    const std::string folder = platform::UserDataFolder();
    return folder.empty() ? "" : Made(folder);
}

std::string GetLogFolder(const std::string& base) {
    const std::string folder = base.empty() ? GetAppDataFolder() : base;
    return folder.empty() ? "" : Made(folder + "ESealLog" + platform::PathSeparator());
}
