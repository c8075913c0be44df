// Signing.h - the PKCS#7 signature of a host's data, with its optional time stamp.
#pragma once

namespace session {

// The pair goes to the service. The setting `bSignWithTimeStamp` is read anew on each call; with a
// time stamp the result of a failed stamping is -3008, whatever went wrong.
int SignPlainData(const unsigned char* data, int dataLen, const char* certId, unsigned char* out,
                  int* outLen);

}  // namespace session
