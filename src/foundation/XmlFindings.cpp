#include "foundation/XmlFindings.h"

#include "foundation/XmlEntities.h"

namespace {

constexpr std::size_t kFullLength = 1000;

void AddAttribute(const char* name, std::string_view value, std::string& results) {
    results.append(" ").append(name).append("=\"");
    AppendXmlEscaped(value, results);
    results += '"';
}

void AddOffset(const char* name, std::optional<std::size_t> offset, std::string& results) {
    if (offset) AddAttribute(name, std::to_string(*offset), results);
}

}  // namespace

void AddXmlFinding(const XmlFinding& finding, std::string& results) {
    if (results.size() >= kFullLength) return;
    results.append("<").append(finding.name);
    if (finding.attribute != nullptr) AddAttribute(finding.attribute, finding.value, results);
    AddOffset("offset", finding.offset, results);
    AddOffset("offset2", finding.offset2, results);
    results += "/>\r\n";
}
