#include "foundation/XmlReader.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "foundation/XmlFindings.h"
#include "foundation/XmlOpenElements.h"
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
    const char* ReadPlainEndTag(const char* tag);
    const char* ReadToken(const char* position);
    void ReadEndTag(const XmlToken& token);

    void Open(const char* tag, std::size_t tagLength, std::string_view name);
    void Close(const char* tag, const char* tagEnd);
    std::uint32_t AddElement(const char* tag, std::size_t tagLength);
    void EndAllInside(std::size_t outer, const char* where);
    void MoveChildrenUp(std::size_t outer);
    void CheckRoot();
    void CorrectDepths();
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
    const char* m_markupEnd = nullptr;  // behind the last markup before the one being read
    bool m_isWellFormed = true;
    bool m_isMoved = false;
};

bool Reader::Read() {
    const char* p = m_begin;
    for (;;) {
        m_markupEnd = p;
        p = static_cast<const char*>(std::memchr(p, '<', static_cast<std::size_t>(m_end - p)));
        if (p == nullptr) break;
        const char* next = ReadPlainStartTag(p);
        if (next == nullptr) next = ReadPlainEndTag(p);
        p = next != nullptr ? next : ReadToken(p);
    }
    EndAllInside(0, m_end);
    if (m_isMoved) CorrectDepths();
    CheckRoot();
    return m_isWellFormed;
}

// A tag of a name alone, as nearly all are; null for any other.
const char* Reader::ReadPlainStartTag(const char* tag) {
    if (!StartsXmlName(tag[1])) return nullptr;
    const char* end = tag + 2;
    while (!EndsXmlName(*end)) ++end;
    if (*end != '>') return nullptr;
    Open(tag, static_cast<std::size_t>(end + 1 - tag), {tag + 1, end});
    return end + 1;
}

// The end tag of the innermost open element without white space in it; null for any other.
const char* Reader::ReadPlainEndTag(const char* tag) {
    if (tag[1] != '/') return nullptr;
    const std::string_view name = m_open.Top().name;
    if (static_cast<std::size_t>(m_end - tag) < name.size() + 3) return nullptr;
    const char* const end = tag + 2 + name.size();
    if (*end != '>' || std::memcmp(tag + 2, name.data(), name.size()) != 0) return nullptr;
    if (m_open.Count() == 1) return nullptr;
    Close(tag, end + 1);
    return end + 1;
}

const char* Reader::ReadToken(const char* position) {
    const XmlToken token = m_tokens.TokenAt(position);
    switch (token.kind) {
        case XmlToken::Kind::kStartTag: Open(position, token.text.size(), token.Name()); break;
        case XmlToken::Kind::kEmptyElementTag: AddElement(position, token.text.size()); break;
        case XmlToken::Kind::kEndTag: ReadEndTag(token); break;
        case XmlToken::Kind::kBadMarkup:
            Report({token.finding, token.type != nullptr ? "type" : nullptr,
                    token.type != nullptr ? token.type : "", Offset(position)});
            break;
        default: break;
    }
    return token.text.data() + token.text.size();
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

void Reader::Open(const char* tag, std::size_t tagLength, std::string_view name) {
    m_open.Push({AddElement(tag, tagLength), 0, name});
}

// The record of a tag, as if it were an empty element's.
std::uint32_t Reader::AddElement(const char* tag, std::size_t tagLength) {
    const std::uint32_t added = m_index.Add();
    XmlOpenElement& parent = m_open.Top();
    XmlElement& element = m_index[added];
    element.start = static_cast<std::uint32_t>(Offset(tag));
    element.length = static_cast<std::uint32_t>(tagLength);
    element.tagLengths = PackXmlTagLengths(tagLength, 0);
    element.flags = static_cast<std::uint32_t>(std::min<std::size_t>(m_open.Count(), 0xFFFF));
    element.parent = parent.element;
    element.firstChild = 0;
    element.nextSibling = 0;
    element.previousSibling = parent.lastChild;
    if (parent.lastChild == 0) {
        element.flags |= XmlElement::kFirstChild;
        m_index[parent.element].firstChild = added;
    } else {
        m_index[parent.lastChild].nextSibling = added;
    }
    parent.lastChild = added;
    return added;
}

// Ends the innermost element by its end tag.
void Reader::Close(const char* tag, const char* tagEnd) {
    const XmlOpenElement& open = m_open.Top();
    XmlElement& element = m_index[open.element];
    const std::size_t startTag = element.length;
    element.length = static_cast<std::uint32_t>(Offset(tagEnd)) - element.start;
    element.tagLengths = PackXmlTagLengths(startTag, static_cast<std::size_t>(tagEnd - tag));
    if (element.firstChild != 0) {
        m_index[element.firstChild].previousSibling = open.lastChild;
    } else if (m_markupEnd == m_begin + element.start + startTag) {
        element.flags |= XmlElement::kNoMarkupInside;
    }
    m_open.Pop();
}

// Ends the elements inside the one at that place of the stack, whose tags stand alone from now on.
void Reader::EndAllInside(std::size_t outer, const char* where) {
    if (m_open.Count() - 1 == outer) return;
    MoveChildrenUp(outer);
    while (m_open.Count() - 1 > outer) {
        const XmlOpenElement& open = m_open.Top();
        XmlElement& element = m_index[open.element];
        element.flags |= XmlElement::kWithoutEndTag;
        const XmlFinding finding{"unended_start_tag", "tagname", open.name, element.start,
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
    for (std::size_t i = outer + 1; i < m_open.Count(); ++i) {
        XmlElement& element = m_index[m_open[i].element];
        const std::uint32_t first = element.firstChild;
        if (first == 0) continue;
        element.firstChild = 0;
        element.nextSibling = first;
        m_index[first].flags &= ~XmlElement::kFirstChild;
        m_index[first].previousSibling = m_open[i].element;
        for (std::uint32_t child = first; child != 0; child = m_index[child].nextSibling) {
            m_index[child].parent = parent;
        }
        last = m_open[i].lastChild;
    }
    m_open[outer].lastChild = last;
    m_isMoved = true;
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

// A parent's index is always below its children's.
void Reader::CorrectDepths() {
    for (std::uint32_t i = 1; i < m_index.Count(); ++i) {
        XmlElement& element = m_index[i];
        const std::uint32_t above = m_index[element.parent].flags & XmlElement::kDepth;
        const std::uint32_t depth = std::min(above + 1, XmlElement::kDepth);
        element.flags = (element.flags & ~XmlElement::kDepth) | depth;
    }
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
