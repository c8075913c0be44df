#include "fakes/Script.h"

#include "fakes/CallLog.h"
#include "fakes/World.h"

namespace fakes {

namespace {

struct State {
    std::vector<Call> calls;
    std::map<std::string, int> counts;
    std::map<std::string, FunctionScript> scripts;
};

// Leaked on purpose: the library under test may call a stand-in while the process ends.
State& Current() {
    static auto* const state = new State;
    return *state;
}

}  // namespace

void* ServiceContext() {
    static int handle = 0;
    return &handle;
}

FunctionScript& FunctionScript::Returns(int result) {
    m_always.result = result;
    return *this;
}

FunctionScript& FunctionScript::ReturnsAt(int number, int result) {
    m_at[number].result = result;
    return *this;
}

FunctionScript& FunctionScript::Gives(std::string output) {
    m_always.output = std::move(output);
    return *this;
}

FunctionScript& FunctionScript::GivesAt(int number, std::string output) {
    m_at[number].output = std::move(output);
    return *this;
}

FunctionScript& FunctionScript::ReportsSize(int size) {
    m_always.size = size;
    return *this;
}

FunctionScript& FunctionScript::ReportsSizeAt(int number, int size) {
    m_at[number].size = size;
    return *this;
}

FunctionScript& FunctionScript::Does(Handler handler) {
    m_handler = std::move(handler);
    return *this;
}

// A scripted output makes a success of a call that the world would refuse.
void FunctionScript::ApplyChange(const Change& change, Answer& answer) {
    if (change.output) {
        answer.output = *change.output;
        answer.result = 0;
    }
    if (change.size) answer.size = change.size;
    if (change.result) answer.result = *change.result;
}

Answer FunctionScript::Apply(const Call& call, const Handler& fallback) const {
    Answer answer;
    if (m_handler) {
        answer = m_handler(call);
    } else if (fallback) {
        answer = fallback(call);
    }
    ApplyChange(m_always, answer);
    const auto change = m_at.find(call.number);
    if (change != m_at.end()) ApplyChange(change->second, answer);
    return answer;
}

FunctionScript& On(const std::string& function) { return Current().scripts[function]; }

void Reset() {
    Current() = {};
    ResetWorld();
}

void ClearCalls() {
    Current().calls.clear();
    Current().counts.clear();
}

const std::vector<Call>& Calls() { return Current().calls; }

std::vector<std::string> CallTexts() {
    std::vector<std::string> texts;
    for (const Call& call : Calls()) texts.push_back(call.text);
    return texts;
}

std::vector<std::string> CallTexts(const std::string& function) {
    std::vector<std::string> texts;
    for (const Call& call : Calls()) {
        if (call.function == function) texts.push_back(call.text);
    }
    return texts;
}

std::vector<std::string> CalledFunctions() {
    std::vector<std::string> names;
    for (const Call& call : Calls()) names.push_back(call.function);
    return names;
}

int CountCalls(const std::string& function) {
    const auto count = Current().counts.find(function);
    return count == Current().counts.end() ? 0 : count->second;
}

void AppendCall(Call& call) {
    call.number = ++Current().counts[call.function];
    Current().calls.push_back(call);
}

}  // namespace fakes
