#include "BoxTest.h"

std::vector<Box> g_boxes;

void platform::ShowMessageBox(const char* text, const char* caption, int style) {
    g_boxes.push_back({text, style, caption});
}
