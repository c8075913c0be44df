// Messages.h - the messages of the online seal service: requests, and what its answers say.
#pragma once

#include <cstdint>
#include <span>
#include <string>

// Text is ANSI. A message is an XML document with the root `ROOT`, without a declaration,
// attributes or indentation, each element on a line that ends with CR LF.

// One seal of a list.
struct OnlineSealEntry {
    std::string sealNum;
    std::string sealName;
    std::string reserved;  // never filled
};

// The whole document of a request. `sn` and `dn` are the fields 2 and 33 of the certificate.
std::string MakeHelloRequest();
std::string MakeSealListRequest(const std::string& sn, const std::string& dn);
std::string MakeAppointedSealRequest(const std::string& sealNum, const std::string& dn,
                                     const std::string& sn);

// The parsers take an answer's elements in document order and only forward. An element that is
// absent leaves the reader where it was, so that what is read in its place is the element before
// it. Text that is no document reads as a status other than "200", and only exactly "200" is a
// success.

// To be called twice: with no `list` and `*count` 0 for the number of seals, which stays as it is
// when there are none and is what the service says, a negative number as an unsigned one; then with
// that number and a list, which may be shorter. No more than `*count` entries and the list's are
// filled, and where the service sends fewer the rest stays as it was.
// 0. -2: the number is absent. -3051: another status; the user sees the service's message in a box,
// else the status, else a text of the library's own.
int ParseSealList(const std::string& answer, std::span<OnlineSealEntry> list, std::uint32_t* count);

// 0, with the Base64 text of a seal; where the answer has none, with the text "200". -2 with `seal`
// untouched: another status, about which nobody is told.
int ParseAppointedSeal(const std::string& answer, std::string& seal);

// 0, or -2 for another status, or for a root of another name than `ROOT`, which the other parsers
// don't look at. The user sees the outcome in a box.
int ParseHelloAnswer(const std::string& answer);

// Says hello to the service at `url`, by one exchange that the calling thread waits for, and shows
// the user the outcome in a box. 0, -1 (no request could be made, and nobody is told), -2, or the
// status of HttpPost.
int TestConnection(const std::string& url);
