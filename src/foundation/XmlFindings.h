// XmlFindings.h - what was wrong with an XML text, as an XML text.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

struct XmlFinding {
    const char* name;                 // names the element
    const char* attribute = nullptr;  // "tagname" or "type", null for neither
    std::string_view value = {};      // its value
    std::optional<std::size_t> offset = {};
    std::optional<std::size_t> offset2 = {};
};

// Appends an empty element for `finding` on a line of its own, such as
// `<lone_end_tag tagname="B" offset="3"/>`, unless `results` has reached 1,000 characters.
void AddXmlFinding(const XmlFinding& finding, std::string& results);
