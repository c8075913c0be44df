// The messages of the online seal service: whatever it answers, the parsers agree on its status,
// tell the user exactly what they should, and fill no more than their caller has room for; and what
// a request holds can be read back.

#include "service/Messages.h"

#include <cstdint>
#include <vector>

#include "foundation/Logger.h"
#include "foundation/XmlDocument.h"
#include "fuzz/driver/Require.h"
#include "platform/MessageBox.h"
#include "service/HttpPost.h"

namespace {

int g_boxes;
std::string g_box;

constexpr int kUnusable = -2;
constexpr int kRefused = -3051;
constexpr std::uint32_t kRoom = 8;

void CheckHello(const std::string& answer) {
    g_boxes = 0;
    const int result = ParseHelloAnswer(answer);
    REQUIRE(g_boxes == 1);
    REQUIRE(result == 0 || result == kUnusable);
    REQUIRE(result != 0 || g_box == "连接服务器成功！");
}

void CheckList(const std::string& answer, bool refused) {
    g_boxes = 0;
    std::uint32_t count = 0;
    const int result = ParseSealList(answer, {}, &count);
    REQUIRE(result == 0 || result == kUnusable || result == kRefused);
    REQUIRE((result == kRefused) == refused);
    REQUIRE(g_boxes == (refused ? 1 : 0));
    REQUIRE(!refused || !g_box.empty());
    REQUIRE(result == 0 || count == 0);
    if (count == 0 || count > kRoom) return;
    std::vector<OnlineSealEntry> list(kRoom + 1, {"-", "-", "-"});
    REQUIRE(ParseSealList(answer, list, &count) == 0);
    for (std::uint32_t i = count; i <= kRoom; ++i) REQUIRE(list[i].sealNum == "-");
    for (const OnlineSealEntry& entry : list) REQUIRE(entry.reserved == "-");
}

// Beyond ASCII a last byte may take the markup behind it along.
std::string SevenBitOf(const std::string& text) {
    std::string kept;
    for (const char c : text) {
        if (c > 0) kept += c;
    }
    return kept;
}

void CheckRequest(const std::string& value) {
    XmlDocument document;
    REQUIRE(document.Load(MakeAppointedSealRequest(value, "dn", value).c_str()));
    REQUIRE(document.FindElement("ROOT"));
    document.EnterElement();
    REQUIRE(document.FindElement("SN") && document.GetElementText() == value);
    REQUIRE(document.FindElement("DN") && document.GetElementText() == "dn");
    REQUIRE(document.FindElement("SEALNUM") && document.GetElementText() == value);
}

}  // namespace

// In the place of the library's own: nothing is shown, logged or sent here.
void platform::ShowMessageBox(const char* text, const char*, int) {
    ++g_boxes;
    g_box = text;
}
void WriteLog(const char*, int, int, unsigned int, const char*, ...) {}
LogScope::LogScope(const char*, const char*, int) : m_line(0), m_startMs(0) {}
LogScope::~LogScope() = default;
int HttpPost(const std::string&, const std::string&, std::string&) { return 1; }

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string answer(reinterpret_cast<const char*>(data), size);
    std::string seal = "-";
    const int result = ParseAppointedSeal(answer, seal);
    REQUIRE(result == 0 || (result == kUnusable && seal == "-"));
    CheckList(answer, result != 0);
    CheckHello(answer);
    CheckRequest(SevenBitOf(answer));
    return 0;
}
