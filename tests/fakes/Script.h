// Script.h - what the stand-ins of the closed libraries record, and what they answer.
//
// The stand-ins and the test program share one library that holds the script. Without a word from
// the test each function answers from the made-up keys and seals of World.h, or with success. The
// script is not protected by a lock.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace fakes {

// The handle that the certificate service gives out; recorded as "ctx".
void* ServiceContext();

// One call as it came. Numbers stand as decimal text, texts and bytes as they came (empty for a
// null pointer).
struct Call {
    std::string function;
    // The call as it would be written: `SOF_Login(ctx, "A", "1234")`. A byte argument with its
    // length reads `3 "abc"`, bytes outside printable ASCII as \xNN, long ones cut behind 64
    // bytes with "..."; null pointers read `null`. An output pair reads `size?` for a null buffer
    // and `out[<stated capacity>]` otherwise.
    std::string text;
    std::vector<std::string> arguments;  // without the context and without output pairs
    bool query = false;                  // the first output buffer was null
    int capacity = 0;                    // as stated for the first output buffer
    int number = 0;                      // counts this function's calls from 1
};

// What a function answers. A null output buffer gets the size alone; a buffer with less capacity
// than the output gets nothing but the size, and the result is kBufferTooSmall.
struct Answer {
    int result = 0;
    std::string output;
    std::optional<int> size;  // reported in place of the output's own
    int width = 0;            // TVK_Get_Pic_From_Eseal_Ex alone
    int height = 0;
    std::vector<std::string> fields;  // TVK_GetSealInfo alone: the eleven fields
};

constexpr int kBufferTooSmall = 0x0A00000B;

using Handler = std::function<Answer(const Call&)>;

// The scripted answers of one function; what isn't scripted comes from the world.
class FunctionScript {
public:
    // Every call fails, or succeeds, with this result. A non-zero result leaves outputs alone.
    FunctionScript& Returns(int result);
    // Only the `number`th call, from 1, counted from the last Reset or ClearCalls.
    FunctionScript& ReturnsAt(int number, int result);
    FunctionScript& Gives(std::string output);
    FunctionScript& GivesAt(int number, std::string output);
    // The size told in place of the output's own.
    FunctionScript& ReportsSize(int size);
    FunctionScript& ReportsSizeAt(int number, int size);
    // Answers in place of the world; the settings above still apply to what it gives.
    FunctionScript& Does(Handler handler);

    Answer Apply(const Call& call, const Handler& fallback) const;

private:
    struct Change {
        std::optional<int> result;
        std::optional<std::string> output;
        std::optional<int> size;
    };
    static void ApplyChange(const Change& change, Answer& answer);

    Change m_always;
    std::map<int, Change> m_at;
    Handler m_handler;
};

// The script of `function`, by its exported name.
FunctionScript& On(const std::string& function);

// Forgets the calls, the scripts and the world.
void Reset();
// Forgets the calls alone; their numbers begin at 1 again.
void ClearCalls();

const std::vector<Call>& Calls();
// The texts of all calls in their order, or of those of one function.
std::vector<std::string> CallTexts();
std::vector<std::string> CallTexts(const std::string& function);
// The functions' names alone, in the order of the calls.
std::vector<std::string> CalledFunctions();
int CountCalls(const std::string& function);

}  // namespace fakes
