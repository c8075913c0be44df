#include "components/drawing/FontFamilies.h"

#include <algorithm>
#include <string_view>

namespace {

using Names = std::vector<std::u8string_view>;

const Names kSong = {u8"SimSun",
                     u8"宋体",
                     u8"NSimSun",
                     u8"新宋体",
                     u8"Noto Serif CJK SC",
                     u8"Source Han Serif SC",
                     u8"AR PL UMing CN"};
const Names kHei = {u8"SimHei",
                    u8"黑体",
                    u8"Microsoft YaHei",
                    u8"微软雅黑",
                    u8"Noto Sans CJK SC",
                    u8"Source Han Sans SC",
                    u8"WenQuanYi Zen Hei",
                    u8"WenQuanYi Micro Hei"};
const Names kKai = {u8"KaiTi",       u8"楷体",          u8"KaiTi_GB2312",
                    u8"楷体_GB2312", u8"AR PL UKai CN", u8"AR PL KaitiM GB"};
const Names kFang = {u8"FangSong", u8"仿宋", u8"FangSong_GB2312", u8"仿宋_GB2312", u8"STFangsong"};

char Lower(char byte) { return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte + 32) : byte; }

bool Same(const std::string& text, std::u8string_view name) {
    return std::equal(text.begin(), text.end(), name.begin(), name.end(),
                      [](char a, char8_t b) { return Lower(a) == Lower(static_cast<char>(b)); });
}

bool Holds(const Names& names, const std::string& family) {
    return std::any_of(names.begin(), names.end(),
                       [&](std::u8string_view name) { return Same(family, name); });
}

void Append(const Names& names, std::vector<std::string>& families) {
    for (const std::u8string_view name : names) {
        std::string family(name.begin(), name.end());
        const bool known = std::find(families.begin(), families.end(), family) != families.end();
        if (!known) families.push_back(std::move(family));
    }
}

}  // namespace

std::vector<std::string> FontFamilies(const std::string& family) {
    std::vector<std::string> families;
    if (!family.empty()) families.push_back(family);
    for (const Names* const style : {&kSong, &kHei, &kKai, &kFang}) {
        if (Holds(*style, family)) Append(*style, families);
    }
    Append(kSong, families);
    Append(kHei, families);
    return families;
}
