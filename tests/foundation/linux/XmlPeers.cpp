#include "XmlPeers.h"

#include <expat.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include <memory>
#include <pugixml.hpp>
#include <vector>

namespace {

const std::string kIllFormed = "ill-formed";

std::string Leaf(const std::string& name, const std::string& text) {
    return name + "=" + text + "\n";
}

std::string NameOf(const xmlNode* node) { return reinterpret_cast<const char*>(node->name); }

void Tell(xmlNode* node, std::string& told) {
    xmlNode* child = xmlFirstElementChild(node);
    if (child == nullptr) {
        const std::unique_ptr<xmlChar, decltype(xmlFree)> text(xmlNodeGetContent(node), xmlFree);
        told += Leaf(NameOf(node), reinterpret_cast<const char*>(text.get()));
        return;
    }
    told += NameOf(node) + "{\n";
    for (; child != nullptr; child = xmlNextElementSibling(child)) Tell(child, told);
    told += "}\n";
}

void Tell(const pugi::xml_node& node, std::string& told) {
    std::string text;
    std::string inside;
    for (const pugi::xml_node& child : node.children()) {
        if (child.type() == pugi::node_element) Tell(child, inside);
        if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) {
            text += child.value();
        }
    }
    told += inside.empty() ? Leaf(node.name(), text) : node.name() + ("{\n" + inside + "}\n");
}

struct ExpatElement {
    std::string text;
    std::string inside;
};

std::vector<ExpatElement>& Open(void* user) {
    return *static_cast<std::vector<ExpatElement>*>(user);
}

void Start(void* user, const XML_Char*, const XML_Char**) { Open(user).emplace_back(); }

void End(void* user, const XML_Char* name) {
    const ExpatElement element = std::move(Open(user).back());
    Open(user).pop_back();
    Open(user).back().inside +=
        element.inside.empty() ? Leaf(name, element.text) : name + ("{\n" + element.inside + "}\n");
}

void Text(void* user, const XML_Char* text, int length) {
    Open(user).back().text.append(text, static_cast<std::size_t>(length));
}

}  // namespace

std::string ReadByLibxml2(const std::string& text) {
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                      XML_PARSE_NOENT | XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        &xmlFreeDoc);
    if (document == nullptr) return kIllFormed;
    std::string told;
    Tell(xmlDocGetRootElement(document.get()), told);
    return told;
}

std::string ReadByExpat(const std::string& text) {
    std::vector<ExpatElement> open(1);
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser(
        XML_ParserCreate(nullptr), &XML_ParserFree);
    XML_SetUserData(parser.get(), &open);
    XML_SetElementHandler(parser.get(), Start, End);
    XML_SetCharacterDataHandler(parser.get(), Text);
    const auto length = static_cast<int>(text.size());
    if (XML_Parse(parser.get(), text.data(), length, 1) != XML_STATUS_OK) return kIllFormed;
    return open.front().inside;
}

std::string ReadByPugixml(const std::string& text) {
    pugi::xml_document document;
    const auto result = document.load_buffer(
        text.data(), text.size(), pugi::parse_default | pugi::parse_ws_pcdata, pugi::encoding_utf8);
    if (!result) return kIllFormed;
    std::string told;
    Tell(document.document_element(), told);
    return told;
}
