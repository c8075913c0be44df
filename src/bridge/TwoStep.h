// TwoStep.h - the service's habit of telling a size first and the bytes afterwards.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

#include "foundation/HeapBuffer.h"

// What became of a two-step call: no memory for the answer, or the failing step's own result.
struct TwoStepOutcome {
    bool noMemory = false;
    int result = 0;
};

// Zeroed memory for `size` bytes with `spare` more behind them, `size` being its length. Empty if
// that can't be had, as for a negative size.
inline CBuffer AllocateAnswer(int size, int spare) {
    if (size < 0) return {};
    CBuffer answer(static_cast<std::size_t>(size) + static_cast<std::size_t>(spare));
    *answer.LengthPointer() = answer ? size : 0;
    return answer;
}

// Cuts a length that the memory of AllocateAnswer(size, spare) doesn't hold to it.
inline void CutAnswer(CBuffer& answer, int size, int spare) {
    const std::int64_t capacity = std::int64_t{size} + spare;
    const auto length = std::clamp(std::int64_t{answer.Length()}, std::int64_t{0}, capacity);
    *answer.LengthPointer() = static_cast<int>(length);
}

// The second step: `call(out, outLen)` into what AllocateAnswer gave, with a cut of its length. The
// result of the call.
template <typename Call>
int FetchAnswer(Call call, CBuffer& answer, int spare) {
    const int size = answer.Length();
    const int result = call(answer.Data(), answer.LengthPointer());
    CutAnswer(answer, size, spare);
    return result;
}

// Both steps. The answer comes with the length that the second one reported and `spare` zero bytes
// behind what the first one asked for; after a failure it is empty. `call(out, outLen)` is called
// with a null `out` and a length of 0 first, then with the size as the stated capacity.
template <typename Call>
TwoStepOutcome FetchInTwoSteps(Call call, int spare, CBuffer& answer) {
    answer = {};
    int size = 0;
    if (const int result = call(nullptr, &size)) return {false, result};
    CBuffer fetched = AllocateAnswer(size, spare);
    if (!fetched) return {true, 0};
    if (const int result = FetchAnswer(call, fetched, spare)) return {false, result};
    answer = std::move(fetched);
    return {};
}
