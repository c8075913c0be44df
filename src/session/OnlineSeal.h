// OnlineSeal.h - a certificate's seal from the online seal service.
#pragma once

#include <string>

#include "foundation/HeapBuffer.h"

// Asks the service at `url` for the seals of the certificate and then for one of them: the only
// one, or the one that the user picks. Its file becomes g_selectedSeal; g_sealPicWidth and
// g_sealPicHeight are its picture's, 0 for an old "ES" file and after a failure; g_esealMode tells
// which reader understood it. Two exchanges, each of which the caller waits for.
//
// 0 with the picture in `picture` and its length in `*pictureLen`. 0 with `picture` empty, and
// `*pictureLen` and g_esealMode as they were: no reader finds a picture in what came.
// -1: a request came out empty, or the answer has no seal. -20: the user picked none. -3052: the
// service has no seal of this certificate. Else a code of the certificate service, of the messages
// or of the transport. Where the dialog can't be shown the seal without a number is asked for.
int FetchSealFromService(const std::string& url, const std::string& certId, CBuffer& picture,
                         int* pictureLen);
