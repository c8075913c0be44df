// SealPictureCheck.h - can the picture of a seal be shown?
#pragma once

#include "components/seallibrary/Seal.h"

// False if there is none, if the seal is 0 millimetres wide or high, if a GIF, PNG, JPEG or BMP is
// cut off in its header or tells no size, or if the seal says that it is one of these and the bytes
// are none of them. Other kinds are taken as they are.
bool HasUsablePicture(const Seal& seal);
