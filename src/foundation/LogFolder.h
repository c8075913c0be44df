// LogFolder.h - the user's folders of the product, made on demand.
#pragma once

#include <string>

// The user's "Velmora" folder with a separator at its end, made if need be; empty if there is no
// place for it. For files of the product's own; the log's path is private to the logger.
std::string GetAppDataFolder();

// The "ESealLog" folder below `base`, which ends in a separator, or below GetAppDataFolder() for an
// empty `base`, made if need be; empty if it can't be.
std::string GetLogFolder(const std::string& base);
