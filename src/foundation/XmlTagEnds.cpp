#include "foundation/XmlTagEnds.h"

#include <cstring>

const char* XmlTagEnds::Find(const char* position) {
    for (int i = 0; i < m_failedCount; ++i) {
        Run(m_failed[i], position);
        if (m_failed[i].quote == 0) return nullptr;
    }
    Search search{position, 0};
    if (const char* const end = Run(search, m_end)) return end;
    if (m_failedCount < kStates) m_failed[m_failedCount++] = {position, 0};
    return nullptr;
}

// Goes on to the next ">" outside quotes, or to `limit`, where it gives null.
const char* XmlTagEnds::Run(Search& search, const char* limit) const {
    while (search.position < limit) {
        const char* const p = search.position++;
        if (search.quote != 0) {
            if (*p == search.quote) search.quote = 0;
        } else if (*p == '>') {
            return p;
        } else if (*p == '"' || *p == '\'') {
            search.quote = *p;
        }
    }
    return nullptr;
}
