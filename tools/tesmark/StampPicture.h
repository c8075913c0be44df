// StampPicture.h - the picture that a stamp puts on the page, from whichever source, and what signs
// with it.
#pragma once

#include "ContentPicture.h"
#include "Selection.h"

// Where the library takes seals from on this machine, by the setting bSealPosition; never kText.
SealSource ConfiguredSource();

// "of a seal in a key" and the like: a clause about the picture.
const char* SourceText(SealSource source);
// "key", "online", "name", "text".
const char* SourceName(SealSource source);

// Selects in the library, which is up: for a text the certificate alone, else by the configured
// source: SelectSeal for the seals in keys; for the others the certificate, as for a signature
// without a seal, and then what the library makes of it (GetSealInfo). A seal that is named is
// refused there (kUsage), since none of them takes a name. Throws a Failure.
SelectedSeal SelectStamp(const SelectionOptions& options, const ContentPictureOptions& content);
