#include "service/Messages.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <limits>

#include "TesmarkOpt.h"
#include "foundation/Logger.h"
#include "foundation/XmlDocument.h"
#include "platform/MessageBox.h"
#include "service/HttpPost.h"

namespace {

constexpr char kRoot[] = "ROOT";
constexpr char kStatusCode[] = "STATUSCODE";
constexpr char kSuccess[] = "200";

constexpr char kBoxCaption[] = "电子签章";

void ShowBox(const char* text, int icon = platform::kMessageBoxWarning) {
    platform::ShowMessageBox(text, kBoxCaption, icon);
}

struct Element {
    const char* name;
    const char* value;
};

std::string MakeRequest(std::initializer_list<Element> elements) {
    XmlDocument document;
    document.AddElement(kRoot, nullptr);
    document.EnterElement();
    for (const Element& element : elements) document.AddElement(element.name, element.value);
    document.LeaveElement();
    return document.GetText();
}

// Where there is no such element ahead, the text of the one that the document stands on.
std::string ReadElement(XmlDocument& document, const char* name) {
    document.FindElement(name);
    return document.GetElementText();
}

// Loads the answer, goes into the first element of that name (null: of any), and reads the status.
std::string OpenAnswer(XmlDocument& document, const std::string& answer, const char* root) {
    document.Load(answer.c_str());
    document.FindElement(root);
    document.EnterElement();
    return ReadElement(document, kStatusCode);
}

// Leading blanks, a sign, digits; 0 without digits.
int ReadNumber(const std::string& text) {
    constexpr long long kLeast = std::numeric_limits<int>::min();
    constexpr long long kMost = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(std::strtoll(text.c_str(), nullptr, 10), kLeast, kMost));
}

// The status stands in the log as text: a service may send anything.
int TellRefusal(XmlDocument& document, const std::string& status) {
    TESMARK_LOG(kLogInfo, "[服务器返回状态码为：%s]", status.c_str());
    const std::string message = ReadElement(document, "MESSAGE");
    ShowBox(message.empty() ? "访问服务器错误，请确认地址是否正确" : message.c_str());
    TESMARK_LOG(kLogError, "[服务器返回错误码为：%s]", message.c_str());
    return TESMARK_SERVICE_REFUSED;
}

void ReadEntries(XmlDocument& document, std::span<OnlineSealEntry> list) {
    for (OnlineSealEntry& entry : list) {
        if (!document.FindElement("SEALINFO")) return;
        document.EnterElement();
        entry.sealNum = ReadElement(document, "SEALNUM");
        entry.sealName = ReadElement(document, "SEALNAME");
        document.LeaveElement();
    }
}

}  // namespace

std::string MakeHelloRequest() { return MakeRequest({{"REQUESTTYPE", "Hello"}}); }

std::string MakeSealListRequest(const std::string& sn, const std::string& dn) {
    return MakeRequest({{"REQUESTTYPE", "GetSealList"}, {"SN", sn.c_str()}, {"DN", dn.c_str()}});
}

std::string MakeAppointedSealRequest(const std::string& sealNum, const std::string& dn,
                                     const std::string& sn) {
    return MakeRequest({{"REQUESTTYPE", "GetAppointedSeal"},
                        {"SN", sn.c_str()},
                        {"DN", dn.c_str()},
                        {"SEALNUM", sealNum.c_str()}});
}

int ParseSealList(const std::string& answer, std::span<OnlineSealEntry> list,
                  std::uint32_t* count) {
    TESMARK_LOG_SCOPE("ParseSealList");
    XmlDocument document;
    const std::string status = OpenAnswer(document, answer, nullptr);
    TESMARK_LOG(kLogInfo, "[解析服务器返回状态码]");
    if (status != kSuccess) return TellRefusal(document, status);
    TESMARK_LOG(kLogInfo, "[状态码为200！]");
    if (!document.FindElement("COUNT")) {
        TESMARK_LOG(kLogError, "[找不到COUNT节点！]");
        return TESMARK_SERVICE_ANSWER;
    }
    TESMARK_LOG(kLogInfo, "[读取印章数目！]");
    const auto number = static_cast<std::uint32_t>(ReadNumber(document.GetElementText()));
    if (number == 0) {
        TESMARK_LOG(kLogInfo, "[印章数目为0！]");
        return 0;
    }
    if (*count < number) {
        TESMARK_LOG(kLogInfo, "[印章数目大于0！]");
        *count = number;
        return 0;
    }
    if (list.data() == nullptr) {
        TESMARK_LOG(kLogError, "[印章数据为空！]");
        return 0;
    }
    ReadEntries(document, list.first(std::min<std::size_t>(*count, list.size())));
    return 0;
}

int ParseAppointedSeal(const std::string& answer, std::string& seal) {
    XmlDocument document;
    if (OpenAnswer(document, answer, nullptr) != kSuccess) return TESMARK_SERVICE_ANSWER;
    seal = ReadElement(document, "SEAL");
    return 0;
}

int ParseHelloAnswer(const std::string& answer) {
    XmlDocument document;
    const std::string status = OpenAnswer(document, answer, kRoot);
    if (status == kSuccess) {
        ShowBox("连接服务器成功！");
        return 0;
    }
    // Unlike in a list, the status decides here and not the message.
    if (status.empty()) {
        ShowBox("连接服务器失败！");
    } else {
        ShowBox(ReadElement(document, "MESSAGE").c_str());
    }
    return TESMARK_SERVICE_ANSWER;
}

int TestConnection(const std::string& url) {
    const std::string request = MakeHelloRequest();
    if (request.empty()) return TESMARK_FAILED;
    std::string answer;
    if (const int status = HttpPost(url, request, answer)) {
        ShowBox("连接服务器失败!", platform::kMessageBoxInformation);
        return status;
    }
    return ParseHelloAnswer(answer);
}
