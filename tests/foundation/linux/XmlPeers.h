// XmlPeers.h - the same document read by independent parsers.
#pragma once

#include <string>

// Each gives the elements of a well-formed document in UTF-8: a leaf as `name=text` on a line, an
// element with others inside as `name{`, them, and `}`. "ill-formed" if the parser refuses it.
std::string ReadByLibxml2(const std::string& text);
std::string ReadByExpat(const std::string& text);
std::string ReadByPugixml(const std::string& text);
