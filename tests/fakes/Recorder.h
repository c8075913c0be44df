// Recorder.h - how a stand-in records a call and hands the scripted answer out.
#pragma once

#include <cstdint>

#include "fakes/Script.h"

namespace fakes {

// Collects the arguments in their order, then answers.
class Recorder {
public:
    explicit Recorder(const char* function);

    Recorder& Context(const void* context);
    Recorder& Number(std::int64_t number);
    Recorder& Text(const char* text);
    Recorder& Bytes(const unsigned char* bytes, int length);
    Recorder& Output(unsigned char* out, int* outLen);

    // Records the call, asks the script and then `fallback`, fills the first output pair.
    int Finish(const Handler& fallback = {});
    // The same, with the whole answer for functions that have more to give.
    Answer FinishWithAnswer(const Handler& fallback);

private:
    void Append(const std::string& text);
    int FillOutput(const Answer& answer) const;

    Call m_call;
    unsigned char* m_out = nullptr;
    int* m_outLen = nullptr;
    bool m_hasOutput = false;
};

}  // namespace fakes
