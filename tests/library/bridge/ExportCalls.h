// ExportCalls.h - the exports as tests call them: texts for pointers with lengths, and a pair that
// remembers whether it was touched.
#pragma once

#include <cstring>
#include <string>

#include "TesmarkOpt.h"

// The buffer and length that a host hands over. Both hold a mark until something is written.
struct OutPair {
    static constexpr unsigned char kMark = 0xA5;
    static constexpr int kMarkLength = 7777;

    OutPair() { std::memset(buffer, kMark, sizeof buffer); }
    explicit OutPair(int capacity) : OutPair() { length = capacity; }

    bool Untouched() const { return length == kMarkLength && BufferUntouched(); }
    bool BufferUntouched() const {
        for (const unsigned char byte : buffer) {
            if (byte != kMark) return false;
        }
        return true;
    }
    // The first `size` bytes, behind which nothing may have been written.
    std::string Bytes(std::size_t size) const {
        return {reinterpret_cast<const char*>(buffer), size};
    }
    std::string Bytes() const { return Bytes(static_cast<std::size_t>(length)); }

    unsigned char buffer[512];
    int length = kMarkLength;
};

inline const unsigned char* AsBytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

inline int AsLength(const std::string& text) { return static_cast<int>(text.size()); }

inline int P1Sign(const std::string& data, unsigned char* out, int* outLen) {
    return P1SignData(AsBytes(data), AsLength(data), out, outLen);
}

inline int P7Sign(const std::string& data, const std::string& property, unsigned char* out,
                  int* outLen) {
    return P7SignData(AsBytes(data), AsLength(data), AsBytes(property), AsLength(property), out,
                      outLen);
}

inline int P7SignFile(const std::string& path, const std::string& property, unsigned char* out,
                      int* outLen) {
    return P7SignBigFile(path.c_str(), AsBytes(property), AsLength(property), out, outLen);
}

// Selects a certificate and a seal file of that mode, the way a host does that remembers both.
inline void SelectSeal(const std::string& serial, const std::string& sealBase64, int mode) {
    SetCertSeal(AsBytes(serial), AsLength(serial), AsBytes(sealBase64), AsLength(sealBase64), mode);
}
