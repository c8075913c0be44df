// XmlEntityTable.h - the names of HTML 4 and "apos", as a hash of texts.
#pragma once

#include <cstddef>

constexpr std::size_t kXmlEntityBucketCount = 130;

// A name in small letters stands in the bucket that the sum of its bytes tells, modulo their count.
// A bucket is one text of entries: a digit for the length of the name, four decimal digits for the
// character's number in Unicode, the name. The first entry with a name is the one that counts.
extern const char* const kXmlEntityBuckets[kXmlEntityBucketCount];
