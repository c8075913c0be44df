#include "tools/sealserver/ServiceAnswer.h"

#include "foundation/Text.h"

namespace {

constexpr char kLineEnd[] = "\r\n";

std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

std::string Line(const std::string& name, const std::string& text) {
    if (text.empty()) return "<" + name + "/>" + kLineEnd;
    return "<" + name + ">" + Escaped(text) + "</" + name + ">" + kLineEnd;
}

std::string Block(const std::string& name, const std::string& lines) {
    return "<" + name + ">" + kLineEnd + lines + "</" + name + ">" + kLineEnd;
}

std::string Success(const std::string& lines) {
    return Block("ROOT", Line("STATUSCODE", "200") + lines);
}

}  // namespace

std::string AnswerHello() { return Success(""); }

std::string AnswerSealList(const std::vector<std::pair<std::string, std::string>>& seals) {
    std::string lines = Line("COUNT", std::to_string(seals.size()));
    for (const auto& [number, name] : seals)
        lines += Block("SEALINFO", Line("SEALNUM", number) + Line("SEALNAME", name));
    return Success(lines);
}

std::string AnswerSeal(const std::string& file) {
    return Success(Line("SEAL", Base64Encode(file)));
}

std::string AnswerSealStatus(const std::string& status) {
    return Success(Line("SEALSTATUS", status));
}

std::string AnswerRefusal(int status, const std::string& message) {
    return Block("ROOT", Line("STATUSCODE", std::to_string(status)) + Line("MESSAGE", message));
}
