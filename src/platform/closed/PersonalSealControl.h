// PersonalSealControl.h - the interface of the personal seal control, the automation class that
// draws pictures of texts.
#pragma once

// The class. On Windows it is a control, dispatchable, whose methods are called by their names.
inline constexpr char kPersonalSealControlClass[] = "{D7A3E1C2-58B4-4F06-93C1-7E2A6B0D4F19}";

// Elsewhere than on Windows the class is a shared library that exports its methods by these names.
// Texts are in UTF-8; the picture is Base64, allocated with malloc and freed by the caller, null
// where there is none. A negative value is a failed call.
extern "C" {

int GetPersonalEsealByXML(const char* settingsXml, const char* text, char** pictureBase64);
int GetPersonalEsealByCertInfo(const char* text, int width, int height, char** pictureBase64);
int GetPersonalEsealByContentWithXML(const char* settingsXml, const char* text,
                                     char** pictureBase64);
int GetPicByContent(int kind, const char* text2, const char* text1, char** pictureBase64);

}  // extern "C"
