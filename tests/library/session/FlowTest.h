// FlowTest.h - a session test over the library's own logic, whose dialogs are scripted.
#pragma once

#include "FlowUser.h"
#include "SessionTest.h"
#include "host/ModuleState.h"
#include "session/SealRetrieval.h"

// Each test begins and ends with fresh module state.
class FlowTest : public SessionTest {
protected:
    FlowTest() { ForgetState(); }
    ~FlowTest() override {
        ForgetState();
        if (g_appOpt.initialised) KVLUnInitialize(g_appOpt);
    }

    // A size query; `m_length` is -7 unless it was told.
    int Query() {
        m_length = -7;
        return session::GetSealInfo(nullptr, &m_length);
    }
    // A size query that ends in `code` with nothing selected and nobody busy.
    void ExpectQueryFails(int code) {
        EXPECT_EQ(Query(), code);
        EXPECT_EQ(m_length, -7);
        EXPECT_EQ(g_sealFlowBusy, 0);
        EXPECT_TRUE(g_currentCertId.Empty());
        EXPECT_TRUE(g_sealInfoCache.Empty());
    }

    // What the user does in the tree of certificates and seals.
    void TreeEndsWith(DialogEnd end, CertSealPick picked = {}) {
        g_user.certSealTree = [=, this](CertSealPick* pick) {
            ++m_treesShown;
            if (end == DialogEnd::Confirmed) *pick = picked;
            return end;
        };
    }

    int m_length = 0;
    int m_treesShown = 0;

private:
    static void ForgetState() {
        g_user = {};
        g_certEsealOpt.ClearCertList();
        state::ClearSelectKeyID();
        g_selectedSealName.Clear();
        g_selectedSealIndex = -1;
        g_stampPictureMode = 1;
        g_sealFlowBusy = 0;
        g_sealPicWidth = 0;
        g_sealPicHeight = 0;
        g_appId.Clear();
        g_pickedCertLabel.clear();
        g_dialogCertLabel.clear();
        FreeSeals(g_pzmSealItems);
        g_pzmDialogPick.clear();
        g_pzmDialogSeal = {};
    }
};
