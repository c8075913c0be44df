// XmlEntities.h - the characters that references in an XML text stand for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// From "&" to ";" a reference has no more bytes between than this, the ";" counted.
constexpr std::size_t kXmlReferenceLength = 9;

// The number of the character that `reference`, the text between "&" and ";", stands for: "#" and
// decimal digits, "#x" and hexadecimal ones, or a name of HTML 4 or "apos", all without regard to
// case. Of two names that differ only in case, either gives the character of the one with the
// capital. 0 for anything else, or for more bytes than a reference can have.
std::uint32_t XmlReferencedCharacter(std::string_view reference);

// Appends `text`, each reference of it replaced by its character in the ANSI code page. What is no
// reference, or stands for a character that the code page lacks, stays as it is. Replaces one level
// only: "&amp;lt;" becomes "&lt;".
void AppendXmlDecoded(std::string_view text, std::string& decoded);

// Appends `value` with "&amp;", "&lt;" and "&gt;" for "&", "<" and ">".
void AppendXmlEscaped(std::string_view value, std::string& text);
