// DialogLists.h - what the dialogs show, as a test sets it up.
#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>

#include "GifFile.h"
#include "host/ModuleState.h"

// The lists that the dialogs show are empty at first, and gone at the end with what was picked.
class DialogLists {
protected:
    DialogLists() { ForgetDialogs(); }
    ~DialogLists() { ForgetDialogs(); }

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
        g_sealPositionMode = 0;
        g_dialogSealRow = -1;
        g_dialogSealCol = -1;
    }
};
