// XmlTagEnds.h - where tags end, quotes minded.
#pragma once

#include <string_view>

// Looks for the ">" that ends a tag: the first outside quotes.
class XmlTagEnds {
public:
    explicit XmlTagEnds(const char* end) : m_end(end) {}

    // The ">" of the tag whose "<" stands before `position`, or null if none follows. Positions
    // only ascend from call to call.
    const char* Find(const char* position);

private:
    struct Search {
        const char* position;
        char quote;  // the one that it is in, or 0
    };

    const char* Run(Search& search, const char* limit) const;

    // A search without success has read the text to its end. From where it stands outside quotes,
    // the next one needs not be made. There are never more than three: every character of the text
    // turns the three states (outside, in either kind of quotes) into three different ones, so
    // searches that differ at one place differ from there on.
    static constexpr int kStates = 3;
    const char* m_end;
    Search m_failed[kStates] = {};
    int m_failedCount = 0;
};
