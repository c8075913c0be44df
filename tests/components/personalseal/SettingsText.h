// SettingsText.h - settings as the library writes them, without any escaping.
#pragma once

#include <string>

// In the encoding of its texts: narrow literals are the ANSI code page's.
struct SettingsText {
    std::string colour = "0";
    std::string frameThick = "3";
    std::string font = "宋体";
    std::string frame = "0";
    std::string space = "6";
    std::string size = "28";
    std::string weight = "常规";
    std::string arrangement = "每列1个汉字";

    SettingsText& PerColumn(int count) {
        arrangement = "每列" + std::to_string(count) + "个汉字";
        return *this;
    }
    SettingsText& Bold() {
        weight = "粗体";
        return *this;
    }
    std::string Xml() const {
        return "<?xml version='1.0' encoding='UTF-8'?><root><m_iRadioColor>" + colour +
               "</m_iRadioColor><m_strFrameThick>" + frameThick + "</m_strFrameThick><m_strFont>" +
               font + "</m_strFont><m_bFrame>" + frame + "</m_bFrame><m_strFontSpace>" + space +
               "</m_strFontSpace><m_strFontSize>" + size + "</m_strFontSize><m_strFontThick>" +
               weight + "</m_strFontThick><m_strArrangement>" + arrangement +
               "</m_strArrangement></root>";
    }
};
