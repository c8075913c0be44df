#include "foundation/XmlReader.h"

#include <limits>

#include "foundation/XmlCharacters.h"
#include "foundation/XmlFindings.h"
#include "foundation/XmlOpenElements.h"
#include "foundation/XmlScan.h"
#include "foundation/XmlTags.h"
#include "foundation/XmlTokens.h"

namespace {

class Reader {
public:
    Reader(const std::string& text, XmlIndex& index, std::string& results)
        : m_begin(text.data()),
          m_end(m_begin + text.size()),
          m_index(index),
          m_results(results),
          m_tokens(text) {}

    bool Read();

private:
    const char* ReadPlainStartTag(const char* tag);
    const char* ReadPlainElement(const char* tag, std::uint32_t nameLength, XmlTextEnd text);
    const char* ReadPlainEndTag(const char* tag);
    const char* PlainEndTagEnd(const char* tag, const char* name, std::size_t nameLength) const;
    const char* ReadToken(const char* position);
    void ReadEndTag(const XmlToken& token);

    std::uint32_t Add(const char* tag, const char* end, std::uint32_t tagLengths,
                      std::uint32_t flags);
    void Open(const char* tag, const char* end, std::size_t nameLength, std::uint32_t flags);
    void Close(const char* tag, const char* end);
    void EndAllInside(std::size_t outer, const char* where);
    void MoveChildrenUp(std::size_t outer);
    void CheckRoot();
    void Report(const XmlFinding& finding);

    std::size_t Offset(const char* place) const {
        return static_cast<std::size_t>(place - m_begin);
    }

    const char* const m_begin;
    const char* const m_end;
    XmlIndex& m_index;
    std::string& m_results;
    XmlTokenizer m_tokens;
    XmlOpenElements m_open;
    bool m_isWellFormed = true;
};

// Behind the end tag of that name at `tag`, which may be the text's end; null if it is no such tag.
inline const char* Reader::PlainEndTagEnd(const char* tag, const char* name,
                                          std::size_t nameLength) const {
    if (tag == m_end || tag[1] != '/' || !IsXmlNameAgain(tag + 2, m_end, name, nameLength)) {
        return nullptr;
    }
    const char* const end = tag + 2 + nameLength;
    return *end == '>' ? end + 1 : nullptr;
}

// A record for the element of the start tag at `tag`, from there to `end`.
inline std::uint32_t Reader::Add(const char* tag, const char* end, std::uint32_t tagLengths,
                                 std::uint32_t flags) {
    const std::uint32_t added = m_index.Add();
    XmlOpenElement& parent = m_open.Top();
    const std::uint32_t previous = parent.lastChild;
    m_index[added] = {.start = static_cast<std::uint32_t>(Offset(tag)),
                      .length = static_cast<std::uint32_t>(end - tag),
                      .tagLengths = tagLengths,
                      .flags = flags,
                      .parent = parent.element,
                      .firstChild = 0,
                      .nextSibling = 0,
                      .previousSibling = previous};
    (previous != 0 ? m_index[previous].nextSibling : m_index[parent.element].firstChild) = added;
    parent.lastChild = added;
    return added;
}

bool Reader::Read() {
    const char* p = FindXmlByte(m_begin, m_end, '<');
    while (p != m_end) {
        const char* next = p[1] == '/' ? ReadPlainEndTag(p) : ReadPlainStartTag(p);
        if (next == nullptr) next = ReadToken(p);
        // Between tags there is mostly nothing or a line end, as the service and AddElement write
        // it.
        if (next[0] == '\r' && next[1] == '\n') next += 2;
        p = *next == '<' ? next : FindXmlByte(next, m_end, '<');
    }
    EndAllInside(0, m_end);
    CheckRoot();
    return m_isWellFormed;
}

// A start tag of a name alone, as nearly all are, and with it the whole element if that holds
// nothing but text; null for any other.
const char* Reader::ReadPlainStartTag(const char* tag) {
    if (!StartsXmlName(tag[1])) return nullptr;
    XmlNameAndText near;
    if (FindXmlNameAndText(tag + 1, m_end, near)) [[likely]] {
        return ReadPlainElement(tag, near.nameLength, {tag + 1 + near.textEnd, false});
    }
    const char* const nameEnd = FindXmlNameEnd(tag + 1, m_end);
    const std::uint32_t nameLength = Offset(nameEnd) - Offset(tag + 1);
    if (*nameEnd != '>' || nameLength > kPlainNameLength) return nullptr;
    return ReadPlainElement(tag, nameLength, FindXmlTextEnd(nameEnd + 1, m_end));
}

inline const char* Reader::ReadPlainElement(const char* tag, std::uint32_t nameLength,
                                            XmlTextEnd text) {
    const char* const end = PlainEndTagEnd(text.place, tag + 1, nameLength);
    if (end == nullptr) {
        Open(tag, tag + 1 + nameLength + 1, nameLength, XmlElement::kOnlyName);
        return text.place;
    }
    const std::uint32_t hints = XmlElement::kOnlyName | XmlElement::kOnlyText;
    Add(tag, end, PackXmlPlainTagLengths(nameLength),
        text.mayHoldReference ? hints : hints | XmlElement::kNoReference);
    return end;
}

// The end tag of the innermost open element without white space in it; null for any other.
const char* Reader::ReadPlainEndTag(const char* tag) {
    const XmlOpenElement& open = m_open.Top();
    if (open.element == 0) return nullptr;
    const char* const end = PlainEndTagEnd(tag, open.name, open.nameLength);
    if (end == nullptr) return nullptr;
    Close(tag, end);
    return end;
}

const char* Reader::ReadToken(const char* position) {
    const XmlToken token = m_tokens.TokenAt(position);
    const char* const end = position + token.text.size();
    switch (token.kind) {
        case XmlToken::Kind::kStartTag: Open(position, end, token.Name().size(), 0); break;
        case XmlToken::Kind::kEmptyElementTag:
            Add(position, end, PackXmlTagLengths(Offset(end) - Offset(position), 0), 0);
            break;
        case XmlToken::Kind::kEndTag: ReadEndTag(token); break;
        case XmlToken::Kind::kBadMarkup:
            Report({token.finding, token.type != nullptr ? "type" : nullptr,
                    token.type != nullptr ? token.type : "", Offset(position)});
            break;
        default: break;
    }
    return end;
}

void Reader::ReadEndTag(const XmlToken& token) {
    const char* const tag = token.text.data();
    const std::string_view name = token.Name();
    const std::size_t place = m_open.Innermost(name);
    if (place == 0) {
        Report({"lone_end_tag", "tagname", name, Offset(tag)});
        return;
    }
    EndAllInside(place, tag);
    Close(tag, tag + token.text.size());
}

// Until its end tag is found an element is its start tag alone.
void Reader::Open(const char* tag, const char* end, std::size_t nameLength, std::uint32_t flags) {
    const std::uint32_t added = Add(tag, end, PackXmlTagLengths(end - tag, 0), flags);
    m_open.Push({added, 0, static_cast<std::uint32_t>(nameLength), tag + 1});
}

// Ends the innermost element by its end tag.
void Reader::Close(const char* tag, const char* end) {
    const XmlOpenElement& open = m_open.Top();
    XmlElement& element = m_index[open.element];
    element.tagLengths = PackXmlTagLengths(element.length, Offset(end) - Offset(tag));
    element.length = Offset(end) - element.start;
    if (element.firstChild != 0) m_index[element.firstChild].previousSibling = open.lastChild;
    m_open.Pop();
}

// Ends the elements inside the one at that place of the stack, whose tags stand alone from now on.
void Reader::EndAllInside(std::size_t outer, const char* where) {
    if (m_open.Last() == outer) return;
    MoveChildrenUp(outer);
    while (m_open.Last() > outer) {
        const XmlOpenElement& open = m_open.Top();
        XmlElement& element = m_index[open.element];
        element.flags |= XmlElement::kWithoutEndTag;
        const XmlFinding finding{"unended_start_tag", "tagname", open.Name(), element.start,
                                 Offset(where)};
        m_open.Pop();
        Report(finding);
    }
}

// Their children become siblings behind them, in the order of the text. All at once, so that no
// element is moved twice for one end tag: it would be for each level.
void Reader::MoveChildrenUp(std::size_t outer) {
    const std::uint32_t parent = m_open[outer].element;
    std::uint32_t last = m_open[outer].lastChild;
    for (std::size_t i = outer + 1; i <= m_open.Last(); ++i) {
        XmlElement& element = m_index[m_open[i].element];
        const std::uint32_t first = element.firstChild;
        if (first == 0) continue;
        element.firstChild = 0;
        element.nextSibling = first;
        m_index[first].previousSibling = m_open[i].element;
        for (std::uint32_t child = first; child != 0; child = m_index[child].nextSibling) {
            m_index[child].parent = parent;
        }
        last = m_open[i].lastChild;
    }
    m_open[outer].lastChild = last;
}

void Reader::CheckRoot() {
    XmlElement& document = m_index[0];
    const std::uint32_t root = document.firstChild;
    if (root == 0) {
        Report({"no_root_element"});
        return;
    }
    m_index[root].previousSibling = m_open.Top().lastChild;
    const std::uint32_t sibling = m_index[root].nextSibling;
    if (sibling == 0) return;
    const std::size_t place = m_index[sibling].start;
    const std::string_view text(m_begin, static_cast<std::size_t>(m_end - m_begin));
    Report({"root_has_sibling", "tagname", XmlNameAtFront(text.substr(place + 1)), place,
            m_index[root].start});
}

void Reader::Report(const XmlFinding& finding) {
    m_isWellFormed = false;
    m_index[0].flags |= XmlElement::kIllFormedDocument;
    if (m_open.Top().element != 0)
        m_index[m_open.Top().element].flags |= XmlElement::kIllFormedBelow;
    AddXmlFinding(finding, m_results);
}

}  // namespace

bool ReadXml(const std::string& text, XmlIndex& index, std::string& results) {
    results.clear();
    const bool isIndexable = text.size() <= std::numeric_limits<std::uint32_t>::max();
    index.Reset(isIndexable ? text.size() : 0);
    return isIndexable && Reader(text, index, results).Read();
}
