// httpUntil.h - downloads over HTTP and HTTPS by libcurl.
#pragma once

#include "include/Util/Downloader.h"

// A libcurl that can't be had counts as a curl_global_init that failed.
//
// Redirects are followed; the server's certificate is not checked, since what comes is signed by
// itself. The page of an HTTP error is a result like any other and lands in the file. There is no
// limit of time but the system's own, and no retry; a body of more than 64 MiB is cut off, which
// gives CURLE_WRITE_ERROR. Not to be used while another thread starts libcurl.
class CHttpUntil : public Downloader {
public:
    int DownloadFile(std::string url, std::string path) override;
};
