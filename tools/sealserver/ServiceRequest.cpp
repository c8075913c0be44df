#include "tools/sealserver/ServiceRequest.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <map>
#include <optional>
#include <pugixml.hpp>

#include "components/text/Utf8Text.h"

namespace {

constexpr int kBadRequest = 400;
constexpr int kTooLarge = 413;
constexpr int kUnknownRequest = 501;

using Values = std::map<std::string, std::string>;

// Clients show the message to their user, in the language that they speak themselves.
bool Refuse(RequestFault& fault, int status, std::string message) {
    fault = {status, std::move(message)};
    return false;
}

// The parser counts a reference's number in 32 bits and makes a character of any: 2^32 would be a
// zero, at which a text ends without a trace, and others would be some other character.
bool IsCharacter(std::string_view digits, int base) {
    constexpr std::uint32_t kLastCharacter = 0x10FFFF;
    std::uint32_t number = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    return read.ec == std::errc() && number != 0 && number <= kLastCharacter;
}

bool HasBadCharacter(std::string_view body) {
    if (body.find('\0') != body.npos) return true;
    for (std::size_t at = 0; (at = body.find("&#", at)) != body.npos;) {
        at += 2;
        const bool isHex = body.substr(at).starts_with('x');
        if (isHex) ++at;
        const char* const known = isHex ? "0123456789ABCDEFabcdef" : "0123456789";
        const std::size_t end = std::min(body.find_first_not_of(known, at), body.size());
        const bool isReference = end > at || body.substr(at).starts_with(';');
        if (isReference && !IsCharacter(body.substr(at, end - at), isHex ? 16 : 10)) return true;
    }
    return false;
}

// Texts, CDATA sections and what entities stand for, one behind the other; nothing if an element is
// in it, or if it is no text.
std::optional<std::string> TextOf(const pugi::xml_node& element) {
    std::string text;
    for (const pugi::xml_node& child : element.children()) {
        if (child.type() == pugi::node_element) return std::nullopt;
        text += child.value();
    }
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    if (begin == std::string::npos) return "";
    text = text.substr(begin, text.find_last_not_of(" \t\r\n") + 1 - begin);
    std::u32string characters;
    if (text.size() > kMaxRequestText || !Utf8Characters(text, characters)) return std::nullopt;
    return text;
}

bool ReadValues(const pugi::xml_document& document, Values& values, RequestFault& fault) {
    const pugi::xml_node root = document.document_element();
    if (std::string_view(root.name()) != "ROOT" || document.find_child([](pugi::xml_node node) {
            return node.type() == pugi::node_doctype;
        })) {
        return Refuse(fault, kBadRequest, "请求格式错误：根元素不是ROOT或含有文档类型声明");
    }
    for (const pugi::xml_node& element : root.children()) {
        if (element.type() != pugi::node_element) continue;
        const auto text = TextOf(element);
        if (!text || !values.emplace(element.name(), *text).second)
            return Refuse(fault, kBadRequest, "请求格式错误：元素内容无效或元素重复");
    }
    return true;
}

struct Shape {
    const char* type;
    RequestKind kind;
    bool hasCertificate;
    bool hasNumber;
    bool hasHash;
};

constexpr Shape kShapes[] = {
    {"Hello", RequestKind::kHello, false, false, false},
    {"GetSealList", RequestKind::kSealList, true, false, false},
    {"GetAppointedSeal", RequestKind::kAppointedSeal, true, true, false},
    {"GetSealStatus", RequestKind::kSealStatus, false, true, true},
};

const Shape* FindShape(const std::string& type) {
    const auto* const shape = std::find_if(std::begin(kShapes), std::end(kShapes),
                                           [&](const Shape& known) { return type == known.type; });
    return shape == std::end(kShapes) ? nullptr : shape;
}

bool Take(const Values& values, const char* name, std::string& value, RequestFault& fault) {
    const auto found = values.find(name);
    if (found == values.end() || found->second.empty())
        return Refuse(fault, kBadRequest, std::string("请求缺少") + name);
    value = found->second;
    return true;
}

// The library goes on with an empty number when its user could not be asked for a seal.
bool TakeNumber(const Values& values, std::string& number, RequestFault& fault) {
    const auto found = values.find("SEALNUM");
    if (found != values.end() && found->second.empty())
        return Refuse(fault, kBadRequest, "没有选择印章：印章编号为空");
    return Take(values, "SEALNUM", number, fault);
}

bool TakeCertificate(const Values& values, ServiceRequest& request, RequestFault& fault) {
    if (!Take(values, "SN", request.serial, fault)) return false;
    const auto name = values.find("DN");
    if (name == values.end()) return Refuse(fault, kBadRequest, "请求缺少DN");
    request.name = name->second;
    return true;
}

}  // namespace

bool ReadServiceRequest(std::string_view body, ServiceRequest& request, RequestFault& fault) {
    if (body.size() > kMaxRequestBytes) return Refuse(fault, kTooLarge, "请求过大");
    pugi::xml_document document;
    const auto parsed = document.load_buffer(
        body.data(), body.size(), pugi::parse_default | pugi::parse_doctype, pugi::encoding_utf8);
    if (!parsed || HasBadCharacter(body)) return Refuse(fault, kBadRequest, "请求不是有效的XML");
    Values values;
    if (!ReadValues(document, values, fault)) return false;
    const Shape* const shape = FindShape(values["REQUESTTYPE"]);
    if (!shape) return Refuse(fault, kUnknownRequest, "不支持的请求类型");
    request = {};
    request.kind = shape->kind;
    return (!shape->hasCertificate || TakeCertificate(values, request, fault)) &&
           (!shape->hasNumber || TakeNumber(values, request.sealNumber, fault)) &&
           (!shape->hasHash || Take(values, "SEALHASH", request.sealHash, fault));
}
