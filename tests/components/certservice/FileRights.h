// FileRights.h - who may read a file.
#pragma once

#include <string>

// Of a file or folder: nobody but this process's user, and the system itself, has any right to it.
bool IsForOwnerAlone(const std::string& path);
