// StrictJson.h - JSON that comes from outside.
#pragma once

#include <json/value.h>

#include <string_view>

// One JSON object, with nothing but white space around it: no comments, no name twice, nothing
// nested deeper than a few levels. False, with `object` in any state, for all else.
bool ReadJsonObject(std::string_view text, Json::Value& object);
