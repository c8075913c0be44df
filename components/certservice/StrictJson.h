// StrictJson.h - JSON that comes from outside.
#pragma once

#include <json/value.h>

#include <string_view>

// One JSON object (RFC 8259) with nothing but white space around it: no comments, no name twice,
// nothing nested deeper than a few levels. Texts are UTF-8 without control characters, and an
// escape is no half of a surrogate pair; an escaped control character, also U+0000, is the text's
// own. Only how a number is spelt isn't looked at closely: "01" is one. False, with `object` in any
// state, for all else.
bool ReadJsonObject(std::string_view text, Json::Value& object);
