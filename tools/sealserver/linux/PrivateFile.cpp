#include "tools/sealserver/PrivateFile.h"

#include <fcntl.h>
#include <unistd.h>

void MakePrivateFile(const std::string& path) {
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (file >= 0) close(file);
}
