// MadeList.h - user lists that the bridge never makes, whose own always have their separators.
#pragma once

#include <string>

// What CAppOpt::GetUserList gives, with success, in a program that links tesmark_made_list.
extern std::string g_madeList;
