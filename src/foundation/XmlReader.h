// XmlReader.h - makes the index of an XML text, however ill-formed it is.
#pragma once

#include <string>

#include "foundation/XmlIndex.h"

// Fills `index`, which is reset, with the elements of `text`, and `results` with what was found
// wrong. True if nothing was, and there is one root. Takes time in proportion to the text, for an
// ill-formed one times the logarithm of its elements. A text of 4 GiB or more has no element.
//
// An element that is never ended stands in the index as its start tag alone, and what it held
// follows it as its siblings, the root not excepted. An end tag of no open element is dropped, and
// so is markup that is none.
bool ReadXml(const std::string& text, XmlIndex& index, std::string& results);
