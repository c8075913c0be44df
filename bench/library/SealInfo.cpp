// A cached GetSealInfo of 50 KB against what it has to do at least: its two log records, its
// settings and the copy.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "TesmarkOpt.h"
#include "bench/Ratio.h"
#include "fakes/Script.h"
#include "fakes/World.h"
#include "foundation/Logger.h"
#include "foundation/Registry.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr int kPictureSize = 50 * 1024;

void CachedSealInfo(benchmark::State& state) {
    std::vector<unsigned char> picture(kPictureSize);
    int length = 0;
    if (GetSealInfo(nullptr, &length) != 0 || length != kPictureSize) {
        state.SkipWithError("no seal");
        return;
    }
    for (auto _ : state) {
        GetSealInfo(picture.data(), &length);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(CachedSealInfo);

void RecordsSettingsCopy(benchmark::State& state) {
    std::vector<unsigned char> picture(kPictureSize);
    const std::vector<unsigned char> cache(kPictureSize, 1);
    for (auto _ : state) {
        WriteLog("SealRetrieval", 1, kLogTrace, 0, "[%s start]", "GetSealInfo");
        CRegistry settings = OpenSettings();
        for (const char* name : {"bSealPosition", "bSignWithTimeStamp", "ReqEsealStatus"}) {
            benchmark::DoNotOptimize(settings.GetNumber(name));
        }
        std::memcpy(picture.data(), cache.data(), cache.size());
        benchmark::ClobberMemory();
        WriteLog("SealRetrieval", 1, kLogTrace, 0, "[%s end][Time consume %d ms]", "GetSealInfo",
                 0);
    }
}
BENCHMARK(RecordsSettingsCopy);

}  // namespace

int main(int count, char** arguments) {
    const TemporaryPrefix prefix;
    prefix.RegisterCertService(SERVICE_FILE);
    fakes::AddCertificate("label", "A");
    fakes::AddFile("A", "ESEAL01", fakes::EsSeal(std::string(kPictureSize, 'p')));
    const int result =
        RunRatios(count, arguments,
                  {{"cached seal picture of 50 KB", "CachedSealInfo", "RecordsSettingsCopy", 1.2}});
    UnInitKVLLib();
    return result;
}
