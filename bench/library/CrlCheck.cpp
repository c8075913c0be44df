// What the library does for a certificate's fresh revocation list of 1 MB before the certificate
// service gets it: the question where it is published, the look at its age, reading and encoding
// it. Against bare reading and encoding of the same file. The service's own part isn't in it.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <string>

#include "bench/Ratio.h"
#include "bridge/AppOpt.h"
#include "bridge/CertCheck.h"
#include "fakes/Script.h"
#include "foundation/Registry.h"
#include "foundation/Text.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr std::size_t kListSize = 1'000'000;
constexpr char kName[] = "bench.crl";
constexpr unsigned char kCertificate[] = "certificate";

CAppOpt g_service;
std::string g_path;

bool MakeFreshList(const TemporaryPrefix& prefix) {
    std::filesystem::create_directories(prefix.CrlFolder());
    g_path = prefix.CrlFolder() + kName;
    std::string list(kListSize, '\0');
    for (std::size_t i = 0; i < list.size(); ++i) list[i] = static_cast<char>(i * 7919 >> 3);
    std::ofstream(g_path, std::ios::binary) << list;
    const std::time_t now = std::time(nullptr);
    const std::tm& local = *std::localtime(&now);
    char time[100];
    std::snprintf(time, sizeof time, "%04d/%02d/%02d 00:00:00", local.tm_year + 1900,
                  local.tm_mon + 1, local.tm_mday);
    CRegistry times(platform::RegistryRootKey(platform::RegistryRoot::LocalMachine));
    return times.CreateKey() == 1 && times.SetString(kName, time) == 1;
}

void FreshList(benchmark::State& state) {
    for (auto _ : state) {
        std::string list;
        if (ObtainCrl(g_service, kCertificate, sizeof kCertificate, list) != 0 ||
            list.size() != kListSize) {
            state.SkipWithError("no list");
        }
        benchmark::DoNotOptimize(Base64Encode(list));
        fakes::ClearCalls();
    }
}
BENCHMARK(FreshList)->Unit(benchmark::kMicrosecond);

void ReadAndEncode(benchmark::State& state) {
    for (auto _ : state) {
        std::FILE* const file = std::fopen(g_path.c_str(), "rb");
        std::string list(kListSize, '\0');
        std::setvbuf(file, nullptr, _IONBF, 0);
        if (std::fread(list.data(), 1, list.size(), file) != kListSize) {
            state.SkipWithError("not read");
        }
        std::fclose(file);
        benchmark::DoNotOptimize(Base64Encode(list));
    }
}
BENCHMARK(ReadAndEncode)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int count, char** arguments) {
    const TemporaryPrefix prefix;
    prefix.RegisterCertService(SERVICE_FILE);
    fakes::On("SOF_GetCertInfoByOid").Gives(std::string("URI:http://127.0.0.1/") + kName);
    if (!MakeFreshList(prefix) || KVLInitialize(g_service) != 0) return 2;
    fakes::ClearCalls();
    const int result =
        RunRatios(count, arguments, {{"fresh list of 1 MB", "FreshList", "ReadAndEncode", 1.2}});
    KVLUnInitialize(g_service);
    return result;
}
