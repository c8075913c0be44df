#include "components/certservice/pinentry/PinentryTalk.h"

#include <openssl/crypto.h>

#include "components/certservice/ServiceCodes.h"
#include "platform/CodePage.h"

namespace {

constexpr std::size_t kLongestText = 900;
// No key has a longer PIN, so that what it is kept in need not grow and leave a copy behind.
constexpr std::size_t kPinRoom = 1024;

bool IsUtf8Continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::string Escape(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    if (value >= 0x20 && value != '%' && value != 0x7F) return std::string(1, byte);
    const char digits[] = "0123456789ABCDEF";
    return {'%', digits[value >> 4], digits[value & 15]};
}

std::string Description(const PinQuestion& question) {
    std::string text = "请输入密钥“" + question.label + "”的 PIN 码。";
    if (question.retries >= 0) text += "\n还可以尝试 " + std::to_string(question.retries) + " 次。";
    return text;
}

PinentryAnswer Prepare(PinentryChannel& channel, const std::vector<std::string>& options,
                       const PinQuestion& question) {
    std::vector<std::string> commands;
    for (const std::string& option : options) commands.push_back("OPTION " + option);
    commands.push_back("SETTIMEOUT " + std::to_string(kPinentryTimeout));
    commands.push_back("SETTITLE " + PinentryText("电子签章"));
    commands.push_back("SETDESC " + PinentryText(Description(question)));
    commands.push_back("SETPROMPT " + PinentryText("PIN："));
    if (!question.error.empty()) commands.push_back("SETERROR " + PinentryText(question.error));
    PinentryAnswer answer = PinentryAnswer::kOk;
    for (const std::string& command : commands) {
        answer = channel.Command(command);
        if (answer == PinentryAnswer::kBroken) break;
    }
    return answer;
}

}  // namespace

std::string PinentryText(const std::string& text) {
    const std::string utf8 = platform::Utf8FromAnsi(text);
    std::string result;
    std::size_t position = 0;
    while (position < utf8.size()) {
        std::string character = Escape(utf8[position++]);
        while (position < utf8.size() && IsUtf8Continuation(utf8[position]))
            character += utf8[position++];
        if (result.size() + character.size() > kLongestText) break;
        result += character;
    }
    return result;
}

int AskForPin(PinentryChannel& channel, const std::vector<std::string>& options,
              const PinQuestion& question, std::string& pin) {
    if (Prepare(channel, options, question) == PinentryAnswer::kBroken)
        return kServicePinUnavailable;
    std::string given;
    given.reserve(kPinRoom);
    const PinentryAnswer answer = channel.CommandToUser("GETPIN", given);
    int code = kServicePinUnavailable;
    if (answer == PinentryAnswer::kCancelled) code = kServicePinCancelled;
    if (answer == PinentryAnswer::kOk && given.size() <= kPinRoom) {
        pin = given;
        code = kServiceOk;
    }
    OPENSSL_cleanse(given.data(), given.capacity());
    return code;
}
