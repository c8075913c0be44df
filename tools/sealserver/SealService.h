// SealService.h - the service itself: from a request to its answer.
#pragma once

#include <string>
#include <string_view>

#include "tools/sealserver/SealStore.h"

struct ServiceReply {
    std::string body;     // XML, UTF-8
    std::string summary;  // for the access log: ASCII, without names and numbers of seals
};

class SealService {
public:
    explicit SealService(SealStore& store) : m_store(store) {}

    // The header fields EncryptType and RequestContent have to be "0" and "XML". Never throws: a
    // failure of the database is an answer, too (500). A certificate that isn't known has no seals;
    // suspended ones are in no list, and asking for one is refused.
    ServiceReply Answer(std::string_view encryptType, std::string_view requestContent,
                        std::string_view body);

private:
    SealStore& m_store;
};
