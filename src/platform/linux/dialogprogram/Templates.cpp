#include "platform/linux/dialogprogram/Templates.h"

#include <algorithm>

namespace platform {

namespace {

using enum ControlKind;

constexpr TemplateControl kCertificate[] = {
    {DefaultButton, 1, u8"确定", 33, 55, 50, 14},
    {Button, 2, u8"取消", 87, 55, 50, 14},
    {List, 1001, u8"", 7, 7, 153, 62},
};

constexpr TemplateControl kOnlineSeal[] = {
    {DefaultButton, 1, u8"确定", 32, 54, 50, 14},
    {Button, 2, u8"取消", 92, 54, 50, 14},
    {List, 1002, u8"", 7, 10, 150, 83},
};

// What "http://" and "/QelmServlet" leave of an address: with a longer one the library would be at
// its end.
constexpr int kLongestHost = 511 - 7 - 12;

constexpr TemplateControl kAddress[] = {
    {DefaultButton, 1, u8"确定", 59, 71, 50, 14},
    {Button, 2, u8"取消", 151, 71, 50, 14},
    {Edit, 1003, u8"", 75, 24, 129, 14, kLongestHost},
    {Label, kNoControl, u8"URL地址：", 12, 27, 38, 8},
    {Label, kNoControl, u8"http://", 51, 27, 22, 8},
    {Label, kNoControl, u8"/QelmServlet", 207, 27, 42, 8},
    {Label, kNoControl, u8"输入格式--IP/工程名，如：192.0.2.45/qelm42", 16, 49, 178, 8},
    {Button, 1006, u8"测试连接", 198, 46, 50, 14},
};

constexpr TemplateControl kSealTree[] = {
    {DefaultButton, 1, u8"确定", 219, 177, 50, 14},
    {Button, 2, u8"取消", 287, 177, 50, 14},
    {Tree, 1004, u8"", 7, 7, 128, 179},
    {Surface, 1005, u8"", 156, 20, 184, 144},
    {Group, kNoControl, u8"印章预览", 146, 7, 202, 161},
};

constexpr DialogTemplate kTemplates[] = {
    {101, 167, 76, true, kCertificate},
    {102, 167, 76, true, kOnlineSeal},
    {103, 262, 92, true, kAddress},
    {104, 355, 206, false, kSealTree},
};

}  // namespace

const DialogTemplate* FindTemplate(int id) {
    const auto* const found = std::find_if(std::begin(kTemplates), std::end(kTemplates),
                                           [id](const auto& each) { return each.id == id; });
    return found == std::end(kTemplates) ? nullptr : found;
}

const TemplateControl* FindControl(const DialogTemplate& dialog, int id) {
    if (id == kNoControl) return nullptr;
    const auto found = std::find_if(dialog.controls.begin(), dialog.controls.end(),
                                    [id](const auto& each) { return each.id == id; });
    return found == dialog.controls.end() ? nullptr : &*found;
}

}  // namespace platform
