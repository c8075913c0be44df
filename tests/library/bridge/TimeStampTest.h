// TimeStampTest.h - a certificate to sign with and a time-stamp engine.
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "SigningTest.h"
#include "StampEngine.h"

class TimeStampTest : public SigningTest {
protected:
    // What the service makes of each step where nothing fails.
    TimeStampTest() {
        StampEngine::Register();
        m_prefix.SetNumber("bSignWithTimeStamp", 1);
        fakes::On("SOF_GetInfoFromSignedMessage").Gives("value");
        fakes::On("SOF_HashData").Gives("0123456789ABCDEF0123456789abcdef");
        fakes::On("SOF_TSGenREQ").Gives(StampEngine::kSwapped);
        fakes::On("SOF_TSGenPDFSignature").Gives("stamped signature");
        Select(0);
    }
    int Sign() { return P7Sign("data", "property", m_out.buffer, &m_out.length); }
    int Query() { return P7Sign("data", "property", nullptr, &m_out.length); }
    // The record in which the copy of a request of `length` bytes is announced.
    static std::string CopyRecord(const std::string& length);

    StampEngine m_engine;
    OutPair m_out{512};
};
