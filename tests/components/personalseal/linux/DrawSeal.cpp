// Calls one method of the built control and writes its picture: draw_seal FILE METHOD ARGUMENT...
// with the method's arguments in their order, in UTF-8. Made for the pictures of the documentation.

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "foundation/Text.h"
#include "platform/Module.h"
#include "platform/closed/PersonalSealControl.h"

namespace {

template <typename Function>
Function* Find(const std::string& method) {
    static const platform::ModuleHandle control = platform::LoadModule(CONTROL_FILE);
    return reinterpret_cast<Function*>(platform::FindSymbol(control, method.c_str()));
}

int Number(const std::string& text) { return std::atoi(text.c_str()); }

int Call(const std::string& method, const std::vector<std::string>& arguments, char** picture) {
    const auto text = [&](std::size_t index) { return arguments.at(index).c_str(); };
    if (method == "GetPersonalEsealByCertInfo") {
        return Find<decltype(GetPersonalEsealByCertInfo)>(method)(text(0), Number(arguments.at(1)),
                                                                  Number(arguments.at(2)), picture);
    }
    if (method == "GetPicByContent") {
        return Find<decltype(GetPicByContent)>(method)(Number(arguments.at(0)), text(1), text(2),
                                                       picture);
    }
    return Find<decltype(GetPersonalEsealByXML)>(method)(text(0), text(1), picture);
}

}  // namespace

int main(int count, char** values) {
    if (count < 5) return 2;
    const std::vector<std::string> arguments(values + 3, values + count);
    char* picture = nullptr;
    const int code = Call(values[2], arguments, &picture);
    const std::unique_ptr<char, decltype(&std::free)> owned(picture, &std::free);
    if (code != 0) {
        std::fprintf(stderr, "%s: %d\n", values[2], code);
        return 1;
    }
    std::ofstream file(values[1], std::ios::binary);
    file << Base64Decode(picture);
    return file.flush() ? 0 : 1;
}
