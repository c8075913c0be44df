// FolderTeller.cpp - a library that has the platform's code in it, as the product's library has.
#include <string>

#include "platform/linux/DialogProcess.h"

extern "C" __attribute__((visibility("default"))) const char* TellLibraryFolder() {
    static const std::string folder = platform::LibraryFolder();
    return folder.c_str();
}
