// ContentPictures.h - pictures that a host has drawn of its own texts.
#pragma once

// The work of the exports of these names; their contracts stand in TesmarkOpt.h.
namespace session {

int GetContentPicture(unsigned char* out, int* outLen, const char* content, int radioColor,
                      int frameThick, const unsigned char* fontName, int fontNameLen, int bFrame,
                      int fontSpace, int fontSize, int bold, int perColumn);
int GetPicByContentInfo(int kind, const char* text1, const char* text2, unsigned char* out,
                        int* outLen);

}  // namespace session
