// SealDialogTest.h - what tests of the dialogs with certificates and seals share.
#pragma once

#include <gmock/gmock.h>

#include <cstdio>
#include <string>
#include <vector>

#include "DialogLists.h"
#include "dialogs/Resource.h"
#include "dialogs/TreeItemData.h"
#include "fakes/LibraryTest.h"
#include "support/ScriptedDialogs.h"

class SealDialogTest : public LibraryTest, protected DialogLists {
protected:
    // The texts of the tree's nodes in the order of their making, one blank ahead for each level
    // and "+" where expanded.
    static std::vector<std::string> TreeOf(const ScriptedDialog& dialog) {
        const auto& nodes = dialog[TESMARK_SEAL_TREE].nodes;
        std::vector<std::string> texts;
        for (const auto& node : nodes) {
            std::string text;
            for (auto parent = node.parent; parent != 0; parent = nodes[parent - 1].parent) {
                text += ' ';
            }
            if (node.expanded) text += '+';
            text += node.text;
            texts.push_back(text);
        }
        return texts;
    }
    static const ScriptedDialog::Control& PreviewOf(const ScriptedDialog& dialog) {
        return dialog[TESMARK_SEAL_PREVIEW];
    }
    // "<width>x<height> at <left>,<top>" of what was drawn last, its first pixel behind it.
    static std::string DrawnIn(const ScriptedDialog& dialog) {
        if (PreviewOf(dialog).drawings.empty()) return "nothing";
        const auto& [picture, place] = PreviewOf(dialog).drawings.back();
        char text[96];
        std::snprintf(text, sizeof text, "%dx%d at %d,%d %06X", place.right - place.left,
                      place.bottom - place.top, place.left, place.top,
                      static_cast<unsigned>(picture.pixels.at(0)));
        return text;
    }
};
