// XmlTokens.h - the pieces that an XML text falls into.
#pragma once

#include <string_view>
#include <vector>

#include "foundation/XmlTagEnds.h"

struct XmlToken {
    enum class Kind {
        kText,
        kWhiteSpace,  // a text of nothing else
        kStartTag,
        kEmptyElementTag,
        kEndTag,
        kCDataSection,
        kProcessingInstruction,
        kComment,
        kDocumentType,
        kBadMarkup,  // up to behind its next ">" or to its next "<"
    };

    // What a tag is called that `text` opens or closes.
    std::string_view Name() const;
    // The text of a CDATA section without its markers.
    std::string_view CDataText() const;

    Kind kind;
    std::string_view text;
    // Of bad markup the finding, and for "unterminated_tag_syntax" what it would have been;
    // otherwise null.
    const char* finding = nullptr;
    const char* type = nullptr;
};

// Tells the tokens of a text, which must outlive it. Characters of two bytes are never taken apart.
// All tokens together take time in proportion to the text, whatever is missing in it.
class XmlTokenizer {
public:
    explicit XmlTokenizer(std::string_view text);

    // The token that begins at `position`, a place before the text's end. Positions only ascend
    // from call to call.
    XmlToken TokenAt(const char* position);

private:
    using Kind = XmlToken::Kind;

    XmlToken TextAt(const char* position) const;
    XmlToken StartTagAt(const char* position);
    XmlToken ExclamationAt(const char* position);
    XmlToken CommentAt(const char* position);
    XmlToken CDataAt(const char* position);
    XmlToken DocumentTypeAt(const char* position);
    XmlToken UpTo(const char* position, std::size_t skipped, std::string_view end, Kind kind);
    XmlToken Bad(const char* position, const char* finding, const char* type = nullptr) const;
    XmlToken CutOff(const char* position, const char* type) const;
    std::string_view From(const char* position, std::size_t skipped = 0) const;
    const char* DocumentTypeEnd(const char* position);

    const char* m_end;
    XmlTagEnds m_tagEnds;
    // What was once not found has no use being looked for again.
    bool m_isWithoutEnd[static_cast<int>(Kind::kBadMarkup)] = {};
    bool m_isNestingKnown = false;
    std::vector<const char*> m_neverClosed;  // every "<" that no ">" balances, once that is known
};
