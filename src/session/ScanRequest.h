// ScanRequest.h - what the scan by phone is asked for.
#pragma once

#include <string>

// A request without an id of the host and without the selection of a certificate on the phone.
struct ScanLoginRequest {
    std::string type = "1";
    std::string showselectcertwnd = "0";
    std::string cardid;
    std::string cardname;
    std::string cardimage;
    std::string appid;

    // A JSON object with these members in the order of their names, each on a line of its own and
    // indented by three blanks, with a line end behind the brace: byte for byte what
    // Json::StyledWriter of jsoncpp 1.9 makes of the same texts. So bytes from 0x80 on are taken
    // for UTF-8 and come out as \uXXXX, most of those of a GBK text as \ufffd.
    std::string StyledText() const;
};
