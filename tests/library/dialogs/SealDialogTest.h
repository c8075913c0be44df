// SealDialogTest.h - what tests of the dialogs with certificates and seals share.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "GifFile.h"
#include "dialogs/Resource.h"
#include "dialogs/TreeItemData.h"
#include "fakes/LibraryTest.h"
#include "host/ModuleState.h"
#include "support/ScriptedDialogs.h"

// The lists that the dialogs show are empty at first, and gone at the end with what was picked.
class SealDialogTest : public LibraryTest {
protected:
    SealDialogTest() { ForgetDialogs(); }
    ~SealDialogTest() override { ForgetDialogs(); }

    static unsigned char* OnHeap(const std::string& bytes) {
        auto* const copy = static_cast<unsigned char*>(std::calloc(bytes.size() + 1, 1));
        std::copy(bytes.begin(), bytes.end(), copy);
        return copy;
    }
    // The list that it is put into owns its buffers.
    static SealRecord MakeSeal(const std::string& name, const std::string& picture) {
        SealRecord seal;
        seal.name = name;
        seal.picData = OnHeap(picture);
        seal.picLen = static_cast<int>(picture.size());
        return seal;
    }
    // Of a label under 32 bytes.
    static CertRecord& AddCert(const std::string& label, int scanMode = 0) {
        CertRecord cert;
        label.copy(cert.certName, sizeof cert.certName - 1);
        cert.scanMode = scanMode;
        g_certEsealOpt.m_certs.push_back(cert);
        return g_certEsealOpt.m_certs.back();
    }
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

private:
    static void ForgetDialogs() {
        g_certEsealOpt.ClearCertList();
        for (SealRecord& seal : g_pzmSealItems) {
            std::free(seal.picData);
            std::free(seal.sealData);
        }
        g_pzmSealItems.clear();
        g_pzmDialogPick.clear();
        g_pzmDialogSeal = {};
        g_dialogCertLabel.clear();
        g_dialogCertItems.clear();
        g_pickedCertLabel.clear();
        g_onlineSealNames.clear();
        g_onlineSealPick.clear();
        g_currentCertId.Clear();
        g_dialogSealRow = -1;
        g_dialogSealCol = -1;
    }
};
