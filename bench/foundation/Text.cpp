// Base64 against OpenSSL, which writes into a buffer that is already there, and short texts against
// an iconv that is kept open.

#include <benchmark/benchmark.h>
#include <iconv.h>
#include <openssl/evp.h>

#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "foundation/Text.h"

namespace {

constexpr int kMebibyte = 1 << 20;

const std::string& Data() {
    static const std::string data = [] {
        std::string bytes;
        unsigned int state = 1;
        for (int i = 0; i < kMebibyte; ++i) {
            state = state * 1664525 + 1013904223;
            bytes += static_cast<char>(state >> 24);
        }
        return bytes;
    }();
    return data;
}

const std::string& Text() {
    static const std::string text = Base64Encode(Data());
    return text;
}

const unsigned char* Bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.data());
}

void Encode(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Base64Encode(Data()));
}
BENCHMARK(Encode);

void OpenSslEncode(benchmark::State& state) {
    std::vector<unsigned char> out(Text().size() + 1);
    for (auto _ : state) {
        benchmark::DoNotOptimize(EVP_EncodeBlock(out.data(), Bytes(Data()), kMebibyte));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(OpenSslEncode);

void Decode(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Base64Decode(Text()));
}
BENCHMARK(Decode);

void OpenSslDecode(benchmark::State& state) {
    std::vector<unsigned char> out(Text().size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            EVP_DecodeBlock(out.data(), Bytes(Text()), static_cast<int>(Text().size())));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(OpenSslDecode);

// Forty bytes of GBK: sixteen characters and eight of ASCII.
const std::string g_ansi = "电子签章测试有限公司合同专用章 seal001";
const std::string g_utf8 = AnsiToUtf8(g_ansi);

// The converter is kept; the result is a string, as ours is.
std::string Convert(iconv_t converter, const std::string& text, std::size_t capacity) {
    std::string result(capacity, '\0');
    char* in = const_cast<char*>(text.data());
    std::size_t inLeft = text.size();
    char* out = result.data();
    std::size_t outLeft = result.size();
    iconv(converter, &in, &inLeft, &out, &outLeft);
    result.resize(result.size() - outLeft);
    return result;
}

void ToUtf8(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(AnsiToUtf8(g_ansi));
}
BENCHMARK(ToUtf8);

void IconvToUtf8(benchmark::State& state) {
    const iconv_t converter = iconv_open("UTF-8", "GBK");
    for (auto _ : state) {
        benchmark::DoNotOptimize(Convert(converter, g_ansi, g_ansi.size() * 2));
    }
    iconv_close(converter);
}
BENCHMARK(IconvToUtf8);

void ToAnsi(benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(Utf8ToAnsi(g_utf8));
}
BENCHMARK(ToAnsi);

void IconvToAnsi(benchmark::State& state) {
    const iconv_t converter = iconv_open("GBK", "UTF-8");
    for (auto _ : state) benchmark::DoNotOptimize(Convert(converter, g_utf8, g_utf8.size()));
    iconv_close(converter);
}
BENCHMARK(IconvToAnsi);

}  // namespace

int main(int count, char** arguments) {
    return RunRatios(count, arguments,
                     {{"Base64 of 1 MiB, encoding", "Encode", "OpenSslEncode", 0.8},
                      {"Base64 of 1 MiB, decoding", "Decode", "OpenSslDecode", 0.8},
                      {"40 bytes of GBK to UTF-8", "ToUtf8", "IconvToUtf8", 1.0},
                      {"the same from UTF-8 to GBK", "ToAnsi", "IconvToAnsi", 1.0}});
}
