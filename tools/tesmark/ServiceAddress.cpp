#include "ServiceAddress.h"

#include <algorithm>
#include <memory>
#include <string_view>

#include "Failure.h"
#include "Library.h"
#include "ResultText.h"
#include "Settings.h"
#include "Terminal.h"
#include "TerminalText.h"
#include "components/http/Address.h"
#include "components/http/SealServiceSettings.h"
#include "foundation/Text.h"
#include "foundation/XmlDocument.h"
#include "include/TesmarkOpt.h"

namespace {

constexpr char kServicePath[] = "/QelmServlet";
constexpr std::string_view kDialogScheme = "http://";
constexpr char kGranted[] = "200";

std::string Hello() {
    XmlDocument document;
    document.AddElement("ROOT", nullptr);
    document.EnterElement();
    document.AddElement("REQUESTTYPE", "Hello");
    return document.GetText();
}

std::string Exchange(const std::string& url, const std::string& request) {
    const Progress progress("Waiting for the online seal service");
    // The library doesn't measure the room: it has to do for the largest answer. Untouched until
    // something is written there.
    const std::size_t largest = ReadSealServiceSettings().largestAnswer;
    const std::unique_ptr<unsigned char[]> room(new unsigned char[largest]);
    int length = 0;
    const LogMark mark;
    const int code = HttpPostData(GbkFromArgument(url, "The address").c_str(),
                                  reinterpret_cast<const unsigned char*>(request.data()),
                                  static_cast<int>(request.size()), room.get(), &length);
    CheckResult(
        code, "The online seal service can't be asked at " + Printable(WithoutPasswords(url)) + ".",
        mark);
    return {reinterpret_cast<const char*>(room.get()),
            static_cast<std::size_t>(std::max(length, 0))};
}

std::string ReadText(XmlDocument& document, const char* name) {
    if (!document.FindElement(name)) return {};
    return Printable(Utf8FromGbk(document.GetElementText()));
}

// An address that is written by the library's dialog, or past this program, may be longer.
std::string FaultOfLength(const char* setting, const std::string& url) {
    if (!IsBeyondReading(FindSetting(setting), url)) return {};
    return "it has more than 199 bytes, and the library takes it for none";
}

}  // namespace

std::string FaultOfServiceAddress(const std::string& url) {
    if (const std::string fault = FaultOfAddress(url); !fault.empty()) return fault;
    if (url.find_first_of("?#; \t\r\n") != std::string::npos) {
        return "it has a blank, \"?\", \"#\" or \";\"";
    }
    if (!url.ends_with(kServicePath)) {
        return std::string("it doesn't end with ") + kServicePath;
    }
    return FaultOfLength("sWSURL", url);
}

std::string FaultOfStatusAddress(const std::string& url) {
    const std::string fault = FaultOfAddress(url);
    return fault.empty() ? FaultOfLength("sEsealStateUrl", url) : fault;
}

bool IsKeptByDialog(const std::string& url) {
    if (!url.starts_with(kDialogScheme)) return false;
    // The dialog ends the host part at the first one.
    const std::size_t path = url.find(kServicePath, kDialogScheme.size());
    return path != url.npos && url.substr(path) == kServicePath;
}

Greeting GreetService(const std::string& url) {
    const std::string answer = Utf8ToAnsi(Exchange(url, Hello()));
    XmlDocument document;
    document.Load(answer.c_str());
    Greeting greeting;
    if (document.FindElement("ROOT")) {
        document.EnterElement();
        greeting.status = ReadText(document, "STATUSCODE");
        greeting.message = ReadText(document, "MESSAGE");
    }
    if (greeting.status == kGranted) return greeting;
    const std::string told = Printable(WithoutPasswords(url));
    if (greeting.status.empty()) {
        throw Failure{ExitCode::kFailed,
                      "What answers at " + told + " is no online seal service.",
                      {},
                      "  look at the address's host, port and path"};
    }
    throw Failure{ExitCode::kFailed, "The service at " + told + " refuses: status " +
                                         greeting.status + (greeting.message.empty() ? "" : ", ") +
                                         greeting.message + "."};
}
