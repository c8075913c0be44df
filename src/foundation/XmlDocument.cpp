#include "foundation/XmlDocument.h"

#include <cstring>

#include "foundation/XmlCharacters.h"
#include "foundation/XmlEntities.h"
#include "foundation/XmlReader.h"
#include "foundation/XmlScan.h"
#include "foundation/XmlTags.h"
#include "foundation/XmlTokens.h"

namespace {

constexpr char kLineEnd[] = "\r\n";

// Opening up the parent may add as much again, and every offset still has 32 bits.
constexpr std::size_t kLargest = std::size_t{1} << 31;

// What a string holds without memory of its own.
constexpr std::size_t kShort = 15;

// Of `length` bytes at `p`, where kShort can be read: a copy of a fixed size needs no call.
inline std::string ShortText(const char* p, std::size_t length) {
    std::string text(p, kShort);
    if (length < kShort) text.resize(length);
    return text;
}

struct NewElement {
    std::string text;  // with its line end
    XmlElement record;
};

// All but the record's place.
NewElement MakeElement(std::string_view name, std::string_view value) {
    NewElement made{"<" + std::string(name), {}};
    std::size_t endTag = 0;
    if (value.empty()) {
        made.text += "/>";
    } else {
        made.text += ">";
        AppendXmlEscaped(value, made.text);
        made.text.append("</").append(name).append(">");
        endTag = name.size() + 3;
        made.record.flags = XmlElement::kOnlyText;
    }
    made.record.length = static_cast<std::uint32_t>(made.text.size());
    made.record.tagLengths = PackXmlTagLengths(name.size() + (value.empty() ? 3 : 2), endTag);
    made.text += kLineEnd;
    return made;
}

// Tokens other than text and CDATA sections are passed over.
std::string TextOfTokens(std::string_view content) {
    std::string text;
    text.reserve(content.size());
    XmlTokenizer tokens(content);
    const char* const end = content.data() + content.size();
    for (const char* p = content.data(); p != end;) {
        const XmlToken token = tokens.TokenAt(p);
        if (token.kind == XmlToken::Kind::kText) AppendXmlDecoded(token.text, text);
        if (token.kind == XmlToken::Kind::kCDataSection) text.append(token.CDataText());
        p += token.text.size();
    }
    return text;
}

std::string TextOf(std::string_view content, bool mayHoldMarkup) {
    const char* const begin = content.data();
    const char* const end = begin + content.size();
    if (mayHoldMarkup && FindXmlByte(begin, end, '<') != end) return TextOfTokens(content);
    if (FindXmlByte(begin, end, '&') == end) return std::string(content);
    std::string text;
    text.reserve(content.size());
    AppendXmlDecoded(content, text);
    return text;
}

}  // namespace

bool XmlDocument::Load(const char* source) {
    m_text.assign(source != nullptr ? source : "");
    m_parent = m_current = m_child = 0;
    return ReadXml(m_text, m_elements, m_results);
}

inline bool XmlDocument::HasName(const XmlElement& element, std::string_view name) const {
    const char* const begin = m_text.data() + element.start + 1;
    if ((element.flags & XmlElement::kOnlyName) != 0) [[likely]] {
        return XmlShortStartTagLength(element) == name.size() + 2 &&
               AreEqualXmlNames(begin, name.data(), name.size());
    }
    return XmlNameAtFront({begin, XmlStartTagLength(m_text, element) - 1}) == name;
}

[[gnu::noinline]] bool XmlDocument::FindFrom(std::uint32_t i, std::string_view name) {
    while (i != 0 && !HasName(m_elements[i], name)) i = m_elements[i].nextSibling;
    return GoTo(i);
}

inline std::uint32_t XmlDocument::ContentBegin(const XmlElement& element) const {
    return element.start + XmlStartTagLength(m_text, element);
}

std::string XmlDocument::GetElementText() const {
    const XmlElement& element = m_elements[m_current];
    if ((element.flags & XmlElement::kNoReference) == 0) [[unlikely]]
        return TextOfCurrent();
    // As it stands in nearly all leaves.
    const std::uint32_t startTag = XmlShortStartTagLength(element);
    const std::size_t begin = std::size_t{element.start} + startTag;
    const std::size_t length = element.length - startTag - XmlShortEndTagLength(element);
    if (length <= kShort && begin + kShort <= m_text.size()) {
        return ShortText(m_text.data() + begin, length);
    }
    return std::string(m_text.data() + begin, length);
}

[[gnu::noinline]] std::string XmlDocument::TextOfCurrent() const {
    const XmlElement& element = m_elements[m_current];
    if (m_current == 0 || element.firstChild != 0 || IsXmlTagAlone(m_text, element)) return {};
    const std::uint32_t begin = ContentBegin(element);
    const std::uint32_t end = XmlContentEnd(m_text, element, begin);
    const std::string_view content(m_text.data() + begin, end - begin);
    return TextOf(content, (element.flags & XmlElement::kOnlyText) == 0);
}

bool XmlDocument::AddElement(const char* name, const char* value) {
    NewElement made = MakeElement(name, value != nullptr ? value : "");
    if (m_text.size() + made.text.size() > kLargest) return false;
    const std::uint32_t previous = m_current != 0 ? m_current : LastChild(m_parent);
    const std::uint32_t offset = m_current != 0 ? OffsetBehindCurrent() : OffsetAtEndOfParent();
    m_text.insert(offset, made.text);
    const std::uint32_t added = m_elements.Add();
    made.record.start = offset;
    m_elements[added] = made.record;
    Link(added, previous);
    ShiftBehind(added, static_cast<std::uint32_t>(made.text.size()));
    m_current = added;
    m_child = 0;
    return true;
}

std::uint32_t XmlDocument::LastChild(std::uint32_t parent) const {
    return m_elements[m_elements[parent].firstChild].previousSibling;
}

std::uint32_t XmlDocument::ContentEnd(const XmlElement& element) const {
    const std::uint32_t first = element.firstChild;
    if (first == 0) return XmlContentEnd(m_text, element, ContentBegin(element));
    const XmlElement& last = m_elements[m_elements[first].previousSibling];
    return XmlContentEnd(m_text, element, last.start + last.length);
}

// Behind the white space too if there is more markup, so that the new element begins a line.
std::uint32_t XmlDocument::OffsetBehindCurrent() const {
    const XmlElement& current = m_elements[m_current];
    const std::size_t behind = current.start + current.length;
    const std::size_t next = m_text.find_first_not_of(" \t\r\n", behind);
    const bool isMarkup = next != std::string::npos && m_text[next] == '<';
    return static_cast<std::uint32_t>(isMarkup ? next : behind);
}

std::uint32_t XmlDocument::OffsetAtEndOfParent() {
    if (m_parent == 0) return static_cast<std::uint32_t>(m_text.size());
    if (IsXmlTagAlone(m_text, m_elements[m_parent])) OpenUp(m_parent);
    return ContentEnd(m_elements[m_parent]);
}

// Gives a tag that stands alone an end tag, whose ">" is the one that it had itself. A start tag
// that was never ended has no "/" to lose.
void XmlDocument::OpenUp(std::uint32_t element) {
    XmlElement& record = m_elements[element];
    const std::uint32_t length = record.length;
    const std::string_view tag = std::string_view(m_text).substr(record.start, length);
    const std::string name(XmlNameAtFront(tag.substr(1)));
    const std::uint32_t slash = tag[length - 2] == '/' ? 1 : 0;
    const std::string put = ">" + std::string(kLineEnd) + "</" + name;
    m_text.replace(record.start + length - 1 - slash, slash, put);
    const auto shift = static_cast<std::uint32_t>(put.size() - slash);
    record.length += shift;
    record.tagLengths = PackXmlTagLengths(length - slash, name.size() + 3);
    record.flags &= ~XmlElement::kWithoutEndTag;
    ShiftBehind(element, shift);
}

void XmlDocument::Link(std::uint32_t added, std::uint32_t previous) {
    XmlElement& parent = m_elements[m_parent];
    XmlElement& element = m_elements[added];
    element.parent = m_parent;
    parent.flags &= ~(XmlElement::kOnlyText | XmlElement::kNoReference);
    if (previous == 0) {
        element.previousSibling = added;
        parent.firstChild = added;
        return;
    }
    element.previousSibling = previous;
    element.nextSibling = m_elements[previous].nextSibling;
    m_elements[previous].nextSibling = added;
    m_elements[element.nextSibling != 0 ? element.nextSibling : parent.firstChild].previousSibling =
        added;
}

// What stands behind the element moves, and what encloses it grows.
void XmlDocument::ShiftBehind(std::uint32_t element, std::uint32_t shift) {
    for (std::uint32_t i = element; i != 0; i = m_elements[i].parent) {
        if (i != element) m_elements[i].length += shift;
        std::uint32_t next = m_elements[i].nextSibling;
        for (; next != 0; next = m_elements[next].nextSibling) ShiftWithAllInside(next, shift);
    }
}

void XmlDocument::ShiftWithAllInside(std::uint32_t element, std::uint32_t shift) {
    std::uint32_t i = element;
    for (;;) {
        m_elements[i].start += shift;
        if (m_elements[i].firstChild != 0) {
            i = m_elements[i].firstChild;
            continue;
        }
        while (i != element && m_elements[i].nextSibling == 0) i = m_elements[i].parent;
        if (i == element) return;
        i = m_elements[i].nextSibling;
    }
}
