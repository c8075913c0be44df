// The XML document: whatever the text is, its index tells places in it and nothing else, the cursor
// goes through all elements and back, and what is added is found again.

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/XmlDocument.h"
#include "foundation/XmlReader.h"
#include "fuzz/driver/Require.h"
#include "tests/foundation/XmlElements.h"

namespace {

constexpr char kValue[] = "a<b&c>";

// The elements below the cursor, each of whose texts is no longer than the document.
std::uint32_t Walk(XmlDocument& document, std::size_t length) {
    std::uint32_t count = 0;
    std::uint32_t depth = 0;
    for (;;) {
        if (document.FindElement(nullptr)) {
            ++count;
            REQUIRE(document.GetElementText().size() <= length);
            document.EnterElement();
            ++depth;
        } else if (depth == 0) {
            return count;
        } else {
            document.LeaveElement();
            --depth;
        }
    }
}

void CheckAdding(XmlDocument& document, std::uint32_t count) {
    const bool isWellFormed = document.Load(document.GetText().c_str());
    if (document.FindElement(nullptr)) document.EnterElement();
    REQUIRE(document.AddElement("new", kValue));
    REQUIRE(document.GetElementText() == kValue);
    REQUIRE(document.AddElement("empty", nullptr));
    document.EnterElement();
    REQUIRE(document.AddElement("inner", kValue));
    document.LeaveElement();
    document.EnterElement();
    REQUIRE(document.GetElementText() == kValue);
    document.LeaveElement();
    document.LeaveElement();
    if (!isWellFormed) return;
    const std::string text = document.GetText();
    REQUIRE(document.Load(text.c_str()));
    REQUIRE(Walk(document, text.size()) == count + 3);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    text.resize(text.find('\0') != std::string::npos ? text.find('\0') : text.size());
    XmlIndex index;
    std::string results;
    const bool isWellFormed = ReadXml(text, index, results);
    REQUIRE(isWellFormed == results.empty());
    REQUIRE(FaultOfIndex(text, index) == nullptr);

    XmlDocument document;
    REQUIRE(document.Load(text.c_str()) == isWellFormed);
    REQUIRE(document.GetText() == text);
    REQUIRE(document.GetResults() == results);
    const std::uint32_t count = Walk(document, text.size());
    REQUIRE(count == index.Count() - 1);
    CheckAdding(document, count);

    XmlDocument found;
    REQUIRE(found.Load(results.c_str()) || results.empty() ||
            found.GetResults().starts_with("<root_has"));
    return 0;
}
