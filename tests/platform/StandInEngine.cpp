#include "StandInEngine.h"

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

std::string Shown(const char* text) { return text != nullptr ? text : "(null)"; }

int Give(const std::string& text, char** result) {
    *result = static_cast<char*>(std::malloc(text.size() + 1));
    if (*result == nullptr) return -1;
    std::memcpy(*result, text.c_str(), text.size() + 1);
    return 0;
}

}  // namespace

int CreateTS(const char* request, char** result) {
    const std::string text = Shown(request);
    if (text == "null") return 0;
    if (text == "swap") return Give("c3dhcHBlZA==", result);
    Give(text, result);
    return text == "fail" ? -7 : 0;
}

int GetPersonalEsealByXML(const char* settings, const char* text, char** result) {
    return Give(Shown(settings) + "|" + Shown(text), result);
}

int GetPersonalEsealByCertInfo(const char* text, int width, int height, char** result) {
    return Give(Shown(text) + "|" + std::to_string(width) + "|" + std::to_string(height), result);
}

int GetPicByContent(int kind, const char* text2, const char* text1, char** result) {
    return Give(std::to_string(kind) + "|" + Shown(text2) + "|" + Shown(text1), result);
}

int GetNothing(char** result) { return Give("called", result); }
