// XmlDocument.h - reads and writes small XML documents by a cursor.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/XmlIndex.h"
#include "foundation/XmlScan.h"
#include "foundation/XmlTags.h"

// A document is one text in the ANSI code page and an index of its elements, whose size is all that
// reading costs in memory. It is neither converted nor given a declaration. For one thread at a
// time. Nothing fails but for want of memory: an ill-formed text gives as many elements as can be
// told (see XmlReader.h).
//
// The cursor stands on an element, or, inside its parent, before all elements: there GetElementText
// is empty and AddElement adds at the parent's end. Names compare exactly.
class XmlDocument {
public:
    XmlDocument() = default;
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    // Replaces the document; null counts as an empty text. The cursor then stands before the root.
    // True if the text has no finding, and one root.
    bool Load(const char* source);

    // Goes forward, never back, to the next sibling of that name, or to the next one whatever its
    // name, if null. If there is none the cursor stays, so that a GetElementText after it reads the
    // element before. Made in place, where a constant name is compared by its words.
    [[gnu::always_inline]] bool FindElement(const char* name) {
        return name != nullptr ? FindNamed(name) : GoTo(NextSibling());
    }

    // Goes inside the current element: before its first child, or to the child on which the cursor
    // stood when it last left. Nothing without a current element.
    void EnterElement() {
        if (m_current == 0) return;
        m_parent = m_current;
        m_current = m_child;
        m_child = 0;
    }
    // Goes to the parent; nothing outside the root.
    void LeaveElement() {
        if (m_parent == 0) return;
        m_child = m_current;
        m_current = m_parent;
        m_parent = m_elements[m_current].parent;
    }

    // The text of the current element with references and CDATA sections resolved, white space
    // kept. Empty for an element that has child elements.
    std::string GetElementText() const;

    // Adds an element behind the current one, or at the end of the parent's content, on a line of
    // its own, and goes to it. A null value counts as an empty one; `name` is written as it
    // comes. False only where the document would grow beyond 2 GiB, and it stays as it is.
    bool AddElement(const char* name, const char* value);

    // The whole document.
    std::string GetText() const { return m_text; }

    // What the last Load found wrong, an empty element for each, named by the finding; none is
    // added once there are 1,000 characters.
    const std::string& GetResults() const { return m_results; }

private:
    // Nearly always the next one is it.
    [[gnu::always_inline]] bool FindNamed(std::string_view name) {
        const std::uint32_t i = NextSibling();
        if (i == 0) return false;
        const XmlElement& element = m_elements[i];
        const bool isSo =
            (element.flags & XmlElement::kOnlyName) != 0 &&
            XmlShortStartTagLength(element) == name.size() + 2 &&
            AreEqualShortXmlNames(m_text.data() + element.start + 1, name.data(), name.size());
        return isSo ? GoTo(i) : FindFrom(i, name);
    }
    bool FindFrom(std::uint32_t i, std::string_view name);
    std::uint32_t NextSibling() const {
        return m_current != 0 ? m_elements[m_current].nextSibling : m_elements[m_parent].firstChild;
    }
    // To another child of m_parent.
    bool GoTo(std::uint32_t i) {
        if (i == 0) return false;
        m_current = i;
        m_child = 0;
        return true;
    }
    bool HasName(const XmlElement& element, std::string_view name) const;
    std::string TextOfCurrent() const;
    std::uint32_t LastChild(std::uint32_t parent) const;
    std::uint32_t ContentBegin(const XmlElement& element) const;
    std::uint32_t ContentEnd(const XmlElement& element) const;
    std::uint32_t OffsetBehindCurrent() const;
    std::uint32_t OffsetAtEndOfParent();
    void OpenUp(std::uint32_t element);
    void Link(std::uint32_t added, std::uint32_t previous);
    void ShiftBehind(std::uint32_t element, std::uint32_t shift);
    void ShiftWithAllInside(std::uint32_t element, std::uint32_t shift);

    std::string m_text;
    std::string m_results;
    std::uint32_t m_parent = 0;   // of m_current
    std::uint32_t m_current = 0;  // 0: before all of m_parent's children
    std::uint32_t m_child = 0;    // of m_current, where the cursor stood last
    XmlIndex m_elements;
};
