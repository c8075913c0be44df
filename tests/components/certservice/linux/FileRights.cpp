#include "components/certservice/FileRights.h"

#include <filesystem>

bool IsForOwnerAlone(const std::string& path) {
    using std::filesystem::perms;
    const perms rights = std::filesystem::status(path).permissions();
    return (rights & (perms::group_all | perms::others_all)) == perms::none;
}
