#include "tools/sealserver/PrivateFile.h"

#include <fstream>

#include "tools/tesmark/PathText.h"

// The folder's rights are the file's.
void MakePrivateFile(const std::string& path) {
    std::ofstream(FileAt(path), std::ios::binary | std::ios::app).flush();
}
