#include <cstdint>
#include <cstring>
#include <new>
#include <string>

#include "components/personalseal/PersonalSeal.h"
#include "components/personalseal/SealControlCodes.h"
#include "foundation/Text.h"
#include "platform/closed/PersonalSealControl.h"

namespace {

const char* TextOf(const char* text) { return text != nullptr ? text : ""; }

// `draw` makes a PNG; its Base64 goes out on the C heap.
template <typename Drawing>
int GiveDrawing(char** pictureBase64, Drawing draw) {
    // As COM has it.
    constexpr auto kNullPointer = static_cast<std::int32_t>(0x80004003);
    if (pictureBase64 == nullptr) return kNullPointer;
    *pictureBase64 = nullptr;
    std::string png;
    if (const int code = draw(png)) return code;
    try {
        *pictureBase64 = strdup(Base64Encode(png).c_str());
    } catch (const std::bad_alloc&) {
    }
    return *pictureBase64 != nullptr ? kSealDrawn : kSealNoDrawing;
}

int GiveStyledSeal(const char* settingsXml, const char* text, char** pictureBase64) {
    return GiveDrawing(pictureBase64, [=](std::string& png) {
        return DrawStyledSeal(TextOf(settingsXml), TextOf(text), png);
    });
}

}  // namespace

int GetPersonalEsealByXML(const char* settingsXml, const char* text, char** pictureBase64) {
    return GiveStyledSeal(settingsXml, text, pictureBase64);
}

int GetPersonalEsealByCertInfo(const char* text, int width, int height, char** pictureBase64) {
    return GiveDrawing(pictureBase64, [=](std::string& png) {
        return DrawNameSeal(TextOf(text), width, height, png);
    });
}

int GetPersonalEsealByContentWithXML(const char* settingsXml, const char* text,
                                     char** pictureBase64) {
    return GiveStyledSeal(settingsXml, text, pictureBase64);
}

int GetPicByContent(int kind, const char* text2, const char* text1, char** pictureBase64) {
    return GiveDrawing(pictureBase64, [=](std::string& png) {
        return DrawContentPicture(kind, TextOf(text2), TextOf(text1), png);
    });
}
