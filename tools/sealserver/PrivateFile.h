// PrivateFile.h - files that are nobody else's business.
#pragma once

#include <string>

// Makes an empty file for its owner alone, where the system knows such rights, at no moment open to
// others. Does nothing where something of that name is, a link that leads nowhere included, and
// where it can't be made: whoever opens it then finds out. The path is text in UTF-8 on Windows,
// bytes elsewhere.
void MakePrivateFile(const std::string& path);
