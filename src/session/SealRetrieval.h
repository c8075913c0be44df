// SealRetrieval.h - which of the sources answers a host's question for the seal picture.
#pragma once

// The work of the exports of these names; their contracts stand in TesmarkOpt.h.
namespace session {

int GetSealInfo(unsigned char* buffer, int* length);
int GetDragSealPic(char** base64);

}  // namespace session
