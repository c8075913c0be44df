// UserList.h - the entries of the certificate service's user list.
#pragma once

#include <optional>
#include <string>
#include <string_view>

struct UserEntry {
    std::string label;
    std::string certId;
};

// Takes the first entry (label "||" certId "&&&") off `rest`. Text that is no whole entry ends the
// list: nothing, with `rest` as it was.
std::optional<UserEntry> TakeEntry(std::string_view& rest);

// Puts the entry at the end of `list`, in the same form.
void AppendEntry(const UserEntry& entry, std::string& list);
