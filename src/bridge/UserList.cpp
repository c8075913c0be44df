#include "bridge/UserList.h"

namespace {

constexpr std::string_view kLabelEnd = "||";
constexpr std::string_view kEntryEnd = "&&&";

}  // namespace

std::optional<UserEntry> TakeEntry(std::string_view& rest) {
    const auto labelEnd = rest.find(kLabelEnd);
    if (labelEnd == std::string_view::npos) return std::nullopt;
    const std::string_view behindLabel = rest.substr(labelEnd + kLabelEnd.size());
    const auto entryEnd = behindLabel.find(kEntryEnd);
    if (entryEnd == std::string_view::npos) return std::nullopt;
    UserEntry entry{std::string(rest.substr(0, labelEnd)),
                    std::string(behindLabel.substr(0, entryEnd))};
    rest = behindLabel.substr(entryEnd + kEntryEnd.size());
    return entry;
}

void AppendEntry(const UserEntry& entry, std::string& list) {
    list.append(entry.label).append(kLabelEnd).append(entry.certId).append(kEntryEnd);
}
