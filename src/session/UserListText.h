// UserListText.h - the certificates that are present, as the list in text.
#pragma once

#include <string>

#include "host/ModuleState.h"

// 0 or a code of CAppOpt::GetUserList, after which `list` is as it was.
inline int ReadUserListText(std::string& list) {
    CBuffer buffer;
    if (const int code = g_appOpt.GetUserList(buffer)) return code;
    list = buffer ? buffer.Text() : "";
    return 0;
}
