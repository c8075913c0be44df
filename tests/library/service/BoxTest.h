// BoxTest.h - a test of the service that sees the boxes as they are asked of the platform: the
// program has a stand-in for platform::ShowMessageBox, so that none is shown.
#pragma once

#include <ostream>

#include "ServiceTest.h"
#include "platform/MessageBox.h"

struct Box {
    std::string text;
    int style = platform::kMessageBoxWarning;
    std::string caption = "电子签章";
    bool operator==(const Box&) const = default;
};
inline void PrintTo(const Box& box, std::ostream* out) {
    *out << AnsiToUtf8(box.caption) << ": " << AnsiToUtf8(box.text) << ", style " << box.style;
}

// Those of the test so far.
extern std::vector<Box> g_boxes;

class BoxTest : public ServiceTest {
protected:
    BoxTest() { g_boxes.clear(); }
};
