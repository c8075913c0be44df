// StandInEngine.h - what the stand-in of an automation engine does, on every platform: it writes
// its arguments into its result, in their order, with "|" between them.
#pragma once

#pragma GCC visibility push(default)
extern "C" {

// Texts are UTF-8, a null one shows as "(null)". For the request "null" the result is null, for
// "swap" the Base64 of "swapped", for "fail" it is -7, with a result that isn't to be used.
int CreateTS(const char* request, char** result);
int GetPersonalEsealByXML(const char* settings, const char* text, char** result);
int GetPersonalEsealByCertInfo(const char* text, int width, int height, char** result);
int GetPicByContent(int kind, const char* text2, const char* text1, char** result);
// "called".
int GetNothing(char** result);
}
#pragma GCC visibility pop
