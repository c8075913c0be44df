// TwoStep.h - the question for the size and the fetch, as every interface here wants them.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

// Calls `call(out, outLen)` for the size and again for the bytes, with `spare` bytes of room more
// than were asked for, since a signature may have another length at each call. Returns the code of
// the call that failed, with `bytes` empty, or 0.
template <typename Call>
int FetchInTwoSteps(Call call, std::string& bytes, int spare = 0) {
    bytes.clear();
    int length = 0;
    if (const int code = call(nullptr, &length)) return code;
    if (length <= 0) return 0;
    std::string room(static_cast<std::size_t>(length) + static_cast<std::size_t>(spare), '\0');
    length += spare;
    if (const int code = call(reinterpret_cast<unsigned char*>(room.data()), &length)) return code;
    room.resize(std::min(room.size(), static_cast<std::size_t>(std::max(length, 0))));
    bytes = std::move(room);
    return 0;
}

inline const unsigned char* Bytes(std::string_view text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}
