// DrawingTest.h - what tests of drawn pictures share.
#pragma once

#include <string>
#include <vector>

#include "DrawingControl.h"
#include "SessionTest.h"
#include "StampEngine.h"
#include "fakes/DrawnPictures.h"

// Each test begins with the control registered and a key of one certificate "cert-1", whose common
// name is "张三", and nothing selected.
class DrawingTest : public SessionTest {
protected:
    static constexpr int kFailure = 77;

    DrawingTest() {
        DrawingControl::Register();
        fakes::AddCertificate("张三", "cert-1");
    }
    // A control that is still held is let go by the next drawing.
    ~DrawingTest() override {
        if (!DrawingControl::IsHeld()) return;
        fakes::Reset();
        fakes::AddCertificate("name", "cert-1");
        ClearSelectKeyID();
        m_prefix.SetNumber("bSignWithTimeStamp", 0);
        SetCurrentCertID("cert-1");
        int length = 0;
        EXPECT_EQ(GetPicByContentInfo(0, "", "", nullptr, &length), 0);
        EXPECT_FALSE(DrawingControl::IsHeld());
    }

    // UTF-8, as the control gets it.
    static std::string Utf8(const char8_t* text) { return reinterpret_cast<const char*>(text); }

    // The calls of the control as "<method>(<argument>|<argument>...)".
    static std::vector<std::string> Drawings() {
        std::vector<std::string> drawings;
        for (const fakes::Call& call : fakes::Calls()) {
            if (!call.function.starts_with("GetP")) continue;
            std::string text = call.function + "(";
            for (const std::string& argument : call.arguments) {
                if (!text.ends_with('(')) text += "|";
                text += argument;
            }
            drawings.push_back(text + ")");
        }
        return drawings;
    }
    static std::string Settings(const std::string& members) {
        return "<?xml version='1.0' encoding='UTF-8'?><root>" + members + "</root>";
    }

    StampEngine m_stampEngine;
    DrawingControl m_control;
};
