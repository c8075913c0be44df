// ScanSeals.h - from the files of a scan by phone to one selected seal.
#pragma once

#include <string>

// Reads the seals that stand beside the certificate and selects the only one of them, or the one
// that the user picks; `picture` is its picture, and is left alone where none is selected. It comes
// out empty where the user confirmed without a pick, with what a former pick told of its seal.
//
// The result is 0 or a code: of the list of files, -3046 for a device without any, -3004 for a
// dialog that was left otherwise than by OK or during which another scan came, -3054 where the
// files held no seal, -1, -2, -3 and others of GetPZMEsealList, also with a picture: that tells the
// last file alone. Of one seal g_pzmSealItems keeps the record without its buffers, of several
// nothing.
int GetPZMSealPic(const std::string& certId, std::string& picture);
