// Downloader.h - something that saves what an address gives into a file.
#pragma once

#include <string>

class Downloader {
public:
    virtual ~Downloader() = default;

    // 0, or a code of libcurl. `path` is emptied before anything is asked of the server, so a
    // failure costs what stood there; a path that can't be opened is no failure and leaves nothing.
    // Blocks for the whole transfer.
    virtual int DownloadFile(std::string url, std::string path) = 0;
};
