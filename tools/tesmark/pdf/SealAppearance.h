// SealAppearance.h - the picture of a seal as objects of a PDF.
#pragma once

#include <string>

#include "components/drawing/Picture.h"
#include "pdf/PdfUpdate.h"
#include "pdf/SealPlacement.h"

// Adds the image, its soft mask where it is not opaque, and the form that shows it as large as
// `place`; gives the form. `likeInk` as in StampRequest.
QPDFObjGen AddSealAppearance(CPdfUpdate& update, const Picture& picture, const SealPlacement& place,
                             bool likeInk);

// A length or coordinate in a PDF's syntax: a point and no exponent, whatever the locale.
std::string PdfNumber(double value);
