#include "components/personalseal/SealStyle.h"

#include <charconv>
#include <optional>

#include "components/personalseal/SealControlCodes.h"
#include "components/text/AsciiText.h"

namespace {

constexpr std::uint32_t kColours[] = {0xD7000F, 0x0B3FA8, 0x000000};
constexpr std::u8string_view kBold = u8"粗体";

std::string Tag(std::string_view name) { return "<" + std::string(name) + ">"; }
std::string EndTag(std::string_view name) { return "</" + std::string(name) + ">"; }

// The elements beside the font, and the font's name.
class CSettingsText {
public:
    explicit CSettingsText(std::string_view text) : m_rest(text) {
        const std::string begin = Tag("m_strFont");
        const std::string end = EndTag("m_strFont");
        const auto first = text.find(begin);
        const auto last = text.rfind(end);
        if (first == std::string_view::npos || last == std::string_view::npos) return;
        const auto inside = first + begin.size();
        if (last < inside) return;
        m_font = std::string(Trimmed(text.substr(inside, last - inside)));
        m_rest = std::string(text.substr(0, first)) + std::string(text.substr(last + end.size()));
    }

    const std::optional<std::string>& Font() const { return m_font; }

    std::optional<std::string_view> Value(std::string_view name) const {
        const std::string begin = Tag(name);
        const auto first = m_rest.find(begin);
        if (first == std::string::npos) return {};
        const auto inside = first + begin.size();
        const auto last = m_rest.find(EndTag(name), inside);
        if (last == std::string::npos) return {};
        return Trimmed(std::string_view(m_rest).substr(inside, last - inside));
    }

private:
    std::optional<std::string> m_font;
    std::string m_rest;
};

struct Range {
    int least;
    int most;
};

constexpr Range kAnyNumber = {INT32_MIN, INT32_MAX};

// False if the value is there and no number of the range.
bool ReadNumber(std::optional<std::string_view> value, Range range, int& number) {
    if (!value) return true;
    int read = 0;
    const char* const end = value->data() + value->size();
    const auto [stop, fault] = std::from_chars(value->data(), end, read);
    if (fault != std::errc() || stop != end || read < range.least || read > range.most) {
        return false;
    }
    number = read;
    return true;
}

// The number in a text such as "每列2个汉字", whatever code page mangled the rest.
std::optional<std::string_view> NumberWithin(std::optional<std::string_view> value) {
    constexpr std::string_view kDigits = "0123456789";
    if (!value) return {};
    const auto first = value->find_first_of(kDigits);
    if (first == std::string_view::npos) return std::string_view();
    return value->substr(first, value->find_first_not_of(kDigits, first) - first);
}

bool IsBold(std::string_view value) {
    return value == std::string_view(reinterpret_cast<const char*>(kBold.data()), kBold.size());
}

bool HasAnElement(std::string_view settings) {
    return settings.find("<m_") != std::string_view::npos;
}

}  // namespace

int ReadSealSettings(std::string_view settings, SealStyle& style) {
    if (settings.size() > kSealLongestSettings || !HasAnElement(settings)) return kSealBadSettings;
    const CSettingsText text(settings);
    int colour = -1;
    int frame = style.frame ? 1 : 0;
    const bool read =
        ReadNumber(text.Value("m_iRadioColor"), {0, std::size(kColours) - 1}, colour) &&
        ReadNumber(text.Value("m_bFrame"), kAnyNumber, frame) &&
        ReadNumber(text.Value("m_strFontSpace"), {0, kSealMostSpace}, style.space) &&
        ReadNumber(text.Value("m_strFontSize"), {kSealLeastSize, kSealMostSize}, style.size) &&
        ReadNumber(NumberWithin(text.Value("m_strArrangement")), {1, kSealMostPerColumn},
                   style.perColumn);
    if (!read) return kSealBadSettings;
    style.frame = frame != 0;
    const Range thickness = style.frame ? Range{1, kSealMostFrameThick} : kAnyNumber;
    if (!ReadNumber(text.Value("m_strFrameThick"), thickness, style.frameThick)) {
        return kSealBadSettings;
    }
    if (colour >= 0) style.colour = kColours[colour];
    if (text.Font()) style.font = *text.Font();
    if (const auto weight = text.Value("m_strFontThick")) style.bold = IsBold(*weight);
    return kSealDrawn;
}
