#include "foundation/XmlTokens.h"

#include <algorithm>

#include "foundation/XmlCharacters.h"
#include "platform/CodePage.h"

namespace {

constexpr std::string_view kCDataStart = "<![CDATA[";
constexpr std::string_view kCDataEnd = "]]>";

const char* TypeName(XmlToken::Kind kind) {
    switch (kind) {
        case XmlToken::Kind::kStartTag:
        case XmlToken::Kind::kEmptyElementTag: return "start_tag";
        case XmlToken::Kind::kEndTag: return "end_tag";
        case XmlToken::Kind::kCDataSection: return "cdata_section";
        case XmlToken::Kind::kProcessingInstruction: return "processing_instruction";
        case XmlToken::Kind::kComment: return "comment";
        case XmlToken::Kind::kDocumentType: return "document_type";
        case XmlToken::Kind::kText:
        case XmlToken::Kind::kWhiteSpace:
        case XmlToken::Kind::kBadMarkup: break;
    }
    return "tag";
}

// True if the byte at `place` is the second of a character. Only bytes that begin one can stand
// between the last place that surely doesn't and this one.
bool IsSecondByte(std::string_view text, std::size_t place) {
    std::size_t leads = 0;
    while (leads < place && platform::IsAnsiLeadByte(text[place - leads - 1])) ++leads;
    return leads % 2 != 0;
}

// Other than ">", "]" can be the second byte of a character.
std::size_t FindCDataEnd(std::string_view text) {
    std::size_t place = text.find(kCDataEnd);
    while (place != std::string_view::npos && IsSecondByte(text, place)) {
        place = text.find(kCDataEnd, place + 1);
    }
    return place;
}

}  // namespace

std::string_view XmlToken::Name() const {
    return XmlNameAtFront(text.substr(kind == Kind::kEndTag ? 2 : 1));
}

std::string_view XmlToken::CDataText() const {
    return text.substr(kCDataStart.size(), text.size() - kCDataStart.size() - kCDataEnd.size());
}

XmlTokenizer::XmlTokenizer(std::string_view text)
    : m_end(text.data() + text.size()), m_tagEnds(m_end) {}

XmlToken XmlTokenizer::TokenAt(const char* position) {
    if (*position != '<') return TextAt(position);
    if (From(position).size() == 1) return CutOff(position, "tag");
    switch (position[1]) {
        case '/': return UpTo(position, 2, ">", Kind::kEndTag);
        case '?': return UpTo(position, 2, "?>", Kind::kProcessingInstruction);
        case '!': return ExclamationAt(position);
        default: break;
    }
    return StartsXmlName(position[1]) ? StartTagAt(position) : Bad(position, "first_tag_syntax");
}

XmlToken XmlTokenizer::TextAt(const char* position) const {
    std::string_view text = From(position);
    text = text.substr(0, text.find('<'));
    const bool isSpace = std::all_of(text.begin(), text.end(), IsXmlSpace);
    return {isSpace ? Kind::kWhiteSpace : Kind::kText, text};
}

XmlToken XmlTokenizer::StartTagAt(const char* position) {
    const char* const end = m_tagEnds.Find(position + 1);
    if (end == nullptr) return CutOff(position, TypeName(Kind::kStartTag));
    const Kind kind = end[-1] == '/' ? Kind::kEmptyElementTag : Kind::kStartTag;
    return {kind, {position, end + 1}};
}

XmlToken XmlTokenizer::ExclamationAt(const char* position) {
    const std::string_view text = From(position);
    if (text.size() == 2) return CutOff(position, "tag");
    switch (text[2]) {
        case '-': return CommentAt(position);
        case '[': return CDataAt(position);
        case 'D': return DocumentTypeAt(position);
        default: return Bad(position, "exclamation_tag_syntax");
    }
}

XmlToken XmlTokenizer::CommentAt(const char* position) {
    const std::string_view text = From(position);
    if (text.size() > 3 && text[3] != '-') return Bad(position, "comment_tag_syntax");
    return UpTo(position, 4, "-->", Kind::kComment);
}

XmlToken XmlTokenizer::CDataAt(const char* position) {
    const std::string_view text = From(position);
    // A beginning that the text's end cuts off is still a section's.
    if (!text.starts_with(kCDataStart) && !kCDataStart.starts_with(text)) {
        return Bad(position, "cdata_section_syntax");
    }
    return UpTo(position, kCDataStart.size(), kCDataEnd, Kind::kCDataSection);
}

XmlToken XmlTokenizer::DocumentTypeAt(const char* position) {
    const std::string_view text = From(position);
    if (text.size() > 3 && text[3] != 'O') return Bad(position, "doctype_tag_syntax");
    const char* const end = DocumentTypeEnd(position);
    if (end == nullptr) return CutOff(position, TypeName(Kind::kDocumentType));
    return {Kind::kDocumentType, {position, end}};
}

// The token from `position` through the first `end` behind its first `skipped` bytes.
XmlToken XmlTokenizer::UpTo(const char* position, std::size_t skipped, std::string_view end,
                            Kind kind) {
    bool& isWithoutEnd = m_isWithoutEnd[static_cast<int>(kind)];
    if (!isWithoutEnd) {
        const std::string_view rest = From(position, skipped);
        const std::size_t place = kind == Kind::kCDataSection ? FindCDataEnd(rest) : rest.find(end);
        if (place != std::string_view::npos) {
            return {kind, {position, rest.data() + place + end.size()}};
        }
        isWithoutEnd = true;
    }
    return CutOff(position, TypeName(kind));
}

XmlToken XmlTokenizer::Bad(const char* position, const char* finding, const char* type) const {
    const std::string_view text = From(position);
    const std::size_t place = text.find_first_of("<>", 1);
    const bool isClosed = place != std::string_view::npos && text[place] == '>';
    return {Kind::kBadMarkup, text.substr(0, isClosed ? place + 1 : place), finding, type};
}

XmlToken XmlTokenizer::CutOff(const char* position, const char* type) const {
    return Bad(position, "unterminated_tag_syntax", type);
}

std::string_view XmlTokenizer::From(const char* position, std::size_t skipped) const {
    const std::string_view rest(position, static_cast<std::size_t>(m_end - position));
    return rest.substr(std::min(skipped, rest.size()));
}

// Behind the ">" that balances the "<" at `position`, or null. When one was not found, the search
// has balanced all the others of the text on its way.
const char* XmlTokenizer::DocumentTypeEnd(const char* position) {
    if (m_isNestingKnown &&
        std::binary_search(m_neverClosed.begin(), m_neverClosed.end(), position)) {
        return nullptr;
    }
    std::vector<const char*> open;
    for (const char* p = position; p != m_end; ++p) {
        if (*p == '<') open.push_back(p);
        if (*p != '>') continue;
        open.pop_back();
        if (open.empty()) return p + 1;
    }
    m_isNestingKnown = true;
    m_neverClosed = std::move(open);
    return nullptr;
}
