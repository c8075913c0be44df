#include "components/http/AnswerHead.h"

#include <algorithm>
#include <charconv>

#include "components/text/AsciiText.h"

namespace {

// 0 where three digits don't stand behind the version.
int StatusOf(std::string_view line) {
    const std::string_view rest = Trimmed(line.substr(std::min(line.find(' '), line.size())));
    const std::string_view digits = rest.substr(0, rest.find(' '));
    int status = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), status);
    const bool whole = error == std::errc() && end == digits.data() + digits.size();
    return whole && digits.size() == 3 && status > 0 ? status : 0;
}

}  // namespace

bool CAnswerHead::Take(std::string_view line) {
    if (line.size() > kLargestHead - m_size) return false;
    m_size += line.size();
    m_isNew = line.starts_with("HTTP/");
    if (m_isNew) {
        m_isWhole = false;
        m_status = StatusOf(line);
        m_type.clear();
        m_isEncoded = false;
        return true;
    }
    // Behind the body there may be more fields, of no more heads.
    m_isWhole = m_isWhole || line == "\r\n" || line == "\n";
    const std::size_t colon = line.find(':');
    if (colon == line.npos) return true;
    const std::string name = LowerCase(line.substr(0, colon));
    const std::string_view value = line.substr(colon + 1);
    if (name == "content-type") m_type = LowerCase(Trimmed(value.substr(0, value.find(';'))));
    if (name == "content-encoding" && !Trimmed(value).empty()) {
        m_isEncoded = m_isEncoded || LowerCase(Trimmed(value)) != "identity";
    }
    return true;
}
