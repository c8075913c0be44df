#include "tools/sealserver/Html.h"

std::string Escaped(std::string_view text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            case '\'': escaped += "&#39;"; break;
            default: escaped += c;
        }
    }
    return escaped;
}

namespace {

std::string Navigation(const std::string& formToken) {
    if (formToken.empty()) return {};
    return "<nav aria-label=\"Main\"><a href=\"/certificates\">Certificates</a>"
           "<a href=\"/password\">Password</a>" +
           ButtonForm("/logout", formToken, "Log out", "quiet") + "</nav>";
}

std::string Notices(const PageFrame& frame) {
    std::string notices;
    if (!frame.done.empty())
        notices += "<p class=\"notice done\" role=\"status\">" + Escaped(frame.done) + "</p>";
    if (!frame.fault.empty())
        notices += "<p class=\"notice fault\" role=\"alert\">" + Escaped(frame.fault) + "</p>";
    return notices;
}

}  // namespace

std::string Page(const PageFrame& frame, const std::string& content) {
    const std::string title = Escaped(frame.title);
    return "<!doctype html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
           "<meta name=\"color-scheme\" content=\"light dark\">\n<title>" +
           title +
           " - seal service</title>\n<link rel=\"icon\" href=\"/icon.svg\" "
           "type=\"image/svg+xml\">\n"
           "<link rel=\"stylesheet\" href=\"/style.css\">\n</head>\n<body>\n"
           "<a class=\"skip\" href=\"#content\">Skip to the content</a>\n"
           "<header><div class=\"bar\"><a class=\"brand\" href=\"/\">Seal service</a>"
           "<span class=\"tag\">for development</span>" +
           Navigation(frame.formToken) + "</div></header>\n<main id=\"content\">\n<h1>" + title +
           "</h1>\n" + Notices(frame) + content + "</main>\n</body>\n</html>\n";
}

std::string TokenField(const std::string& formToken) {
    return "<input type=\"hidden\" name=\"token\" value=\"" + Escaped(formToken) + "\">";
}

std::string ButtonForm(const std::string& action, const std::string& formToken,
                       const std::string& button, const std::string& className) {
    return "<form method=\"post\" action=\"" + Escaped(action) + "\">" + TokenField(formToken) +
           "<button class=\"" + Escaped(className) + "\">" + Escaped(button) + "</button></form>";
}
