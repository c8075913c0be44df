// CrlCache.h - the local copies of certificate revocation lists and the rule that renews them.
#pragma once

#include <string>
#include <string_view>

#include "include/Util/Downloader.h"
#include "revocation/Clock.h"

// Keeps one file per list in `folder` (with a separator at its end), and beside it, in the
// registry, when it was fetched. A list is fresh on the calendar day of its download and stale from
// one second past the midnight that ends it. Lists are told apart by the last part of their address
// alone, without regard to the case of its letters: the registry knows no other names. Files and
// times are never removed, and nothing is locked: whoever reads during a download can see part of a
// file.
class CrlCache {
public:
    CrlCache(std::string folder, Downloader& downloader, Clock& clock)
        : m_folder(std::move(folder)), m_downloader(downloader), m_clock(clock) {}

    // Gives the bytes of the list that `distributionPoints` names, fetching it when it is absent
    // or stale: the text of the certificate's extension (RFC 5280, 4.2.1.13), of which the last
    // http address is used, else the last https address, each to the end of the text.
    // 0 with an empty `crl`: the folder can't be written, or its last part is no name of a file in
    // it, or the server gave nothing.
    // -3048: the text names no such address. -1: a refresh failed, and the old list is gone.
    // Any other value is the first download's libcurl code. Blocks for the whole transfer.
    int Get(std::string_view distributionPoints, std::string& crl);

private:
    struct List {
        std::string url;
        std::string name;  // of the file and of the time
        std::string path;
    };

    int Fetch(const List& list);
    int Refresh(const List& list);
    int Renew(const List& list);

    std::string m_folder;
    Downloader& m_downloader;
    Clock& m_clock;
};
