#include "fakes/Recorder.h"

#include <cstdio>
#include <cstring>

#include "fakes/CallLog.h"

namespace fakes {

namespace {

constexpr std::size_t kLongestShown = 64;

std::string Quoted(const std::string& bytes) {
    std::string text = "\"";
    for (const char c : bytes.substr(0, kLongestShown)) {
        const auto byte = static_cast<unsigned char>(c);
        char escaped[8];
        if (byte >= 0x20 && byte < 0x7F) {
            text += c;
        } else {
            std::snprintf(escaped, sizeof escaped, "\\x%02X", static_cast<unsigned>(byte));
            text += escaped;
        }
    }
    return text + (bytes.size() > kLongestShown ? "\"..." : "\"");
}

}  // namespace

Recorder::Recorder(const char* function) {
    m_call.function = function;
    m_call.text = std::string(function) + "(";
}

void Recorder::Append(const std::string& text) {
    if (m_call.text.back() != '(') m_call.text += ", ";
    m_call.text += text;
}

Recorder& Recorder::Context(const void* context) {
    if (context == ServiceContext()) {
        Append("ctx");
    } else {
        Append(context == nullptr ? "null" : "ctx?");
    }
    return *this;
}

Recorder& Recorder::Number(std::int64_t number) {
    m_call.arguments.push_back(std::to_string(number));
    Append(m_call.arguments.back());
    return *this;
}

Recorder& Recorder::Text(const char* text) {
    m_call.arguments.emplace_back(text != nullptr ? text : "");
    Append(text != nullptr ? Quoted(text) : "null");
    return *this;
}

Recorder& Recorder::Bytes(const unsigned char* bytes, int length) {
    std::string value;
    if (bytes != nullptr && length > 0) {
        value.assign(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
    }
    Append(std::to_string(length) + " " + (bytes != nullptr ? Quoted(value) : "null"));
    m_call.arguments.push_back(std::move(value));
    return *this;
}

Recorder& Recorder::Output(unsigned char* out, int* outLen) {
    const int capacity = outLen != nullptr ? *outLen : 0;
    Append(out == nullptr ? "size?" : "out[" + std::to_string(capacity) + "]");
    if (m_hasOutput) return *this;
    m_hasOutput = true;
    m_out = out;
    m_outLen = outLen;
    m_call.query = out == nullptr;
    m_call.capacity = capacity;
    return *this;
}

int Recorder::FillOutput(const Answer& answer) const {
    if (!m_hasOutput || answer.result != 0) return answer.result;
    const int size = static_cast<int>(answer.output.size());
    const bool fits = m_out == nullptr || size <= *m_outLen;
    if (m_out != nullptr && fits && size > 0) {
        std::memcpy(m_out, answer.output.data(), answer.output.size());
    }
    *m_outLen = answer.size.value_or(size);
    return fits ? 0 : kBufferTooSmall;
}

Answer Recorder::FinishWithAnswer(const Handler& fallback) {
    m_call.text += ")";
    AppendCall(m_call);
    Answer answer = On(m_call.function).Apply(m_call, fallback);
    answer.result = FillOutput(answer);
    return answer;
}

int Recorder::Finish(const Handler& fallback) { return FinishWithAnswer(fallback).result; }

}  // namespace fakes
