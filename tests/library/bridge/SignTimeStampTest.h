// SignTimeStampTest.h - the making of a time stamp, with a place of the test's own for the copy of
// the request.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "ExportCalls.h"
#include "StampEngine.h"
#include "bridge/AppOpt.h"
#include "fakes/LibraryTest.h"

// Where the program's TimeStampRequestPath leads.
extern std::string g_copyPath;

class SignTimeStampTest : public LibraryTest {
protected:
    static constexpr char kSigned[] = "a signed message";
    static constexpr char kHash[] = "0123456789ABCDEF0123456789abcdef";

    SignTimeStampTest() {
        g_copyPath = m_prefix.Below("req.dat");
        fakes::On("SOF_GetInfoFromSignedMessage").Gives("value");
        fakes::On("SOF_HashData").Gives(kHash);
        fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
        fakes::On("SOF_TSGenPDFSignature").Gives("stamped");
        KVLInitialize(m_appOpt);
        fakes::ClearCalls();
        ForgetLog();
    }
    ~SignTimeStampTest() override { KVLUnInitialize(m_appOpt); }
    void SetUp() override { StampEngine::Register(); }

    int Stamp(const std::string& signedData = kSigned) {
        return m_appOpt.SignTimeStamp(AsBytes(signedData), AsLength(signedData), m_out.buffer,
                                      &m_out.length);
    }
    // The calls of the service that a stamp makes where nothing fails, by their names.
    static std::vector<std::string> AllSteps() {
        return {"SOF_GetInfoFromSignedMessage", "SOF_HashData", "SOF_TSGenREQ",
                "SOF_TSGenPDFSignature"};
    }

    StampEngine m_engine;
    CAppOpt m_appOpt;
    OutPair m_out{512};
};

class StampWithoutEngineTest : public SignTimeStampTest {
protected:
    void SetUp() override {}
};
