// An enumeration of 20 certificates with 10 seals each, against the bare calls of the certificate
// service that it makes and its log records, replayed.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "bench/Ratio.h"
#include "fakes/LogHome.h"
#include "fakes/Script.h"
#include "fakes/World.h"
#include "foundation/Logger.h"
#include "seal/CertEsealOpt.h"
#include "support/TemporaryPrefix.h"

namespace {

constexpr int kCertificates = 20;
constexpr int kSeals = 10;
constexpr int kPictureSize = 20 * 1024;

CAppOpt g_service;
CCertEsealOpt g_list(&g_service);

void MakeWorld() {
    const std::string seal = fakes::EsSeal(std::string(kPictureSize, 'p'));
    for (int i = 0; i < kCertificates; ++i) {
        const std::string certId = "cert-" + std::to_string(i);
        fakes::AddCertificate("label", certId);
        for (int k = 0; k < kSeals; ++k) {
            fakes::AddFile(certId, "ESEAL" + std::to_string(k), seal);
        }
    }
}

std::string LogText() {
    std::ifstream file(fakes::LogPath(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The messages of one enumeration's records, of whatever level.
std::vector<std::string> Messages(const std::string& log) {
    constexpr std::string_view kBeforeMessage = "status(0), ";
    std::vector<std::string> messages;
    for (auto at = log.find(kBeforeMessage); at != std::string::npos;
         at = log.find(kBeforeMessage, at)) {
        at += kBeforeMessage.size();
        messages.push_back(log.substr(at, log.find('\n', at) - at));
    }
    return messages;
}

using Kept = std::vector<std::unique_ptr<unsigned char[]>>;

// The calls of one enumeration, made again. What was fetched is kept, as it is in a list.
void Replay(const std::vector<fakes::Call>& calls, Kept& kept) {
    const CKVLOpt& kvl = *g_service.kvl;
    for (const fakes::Call& call : calls) {
        int length = call.capacity;
        if (!call.query) kept.emplace_back(new unsigned char[static_cast<std::size_t>(length) + 1]);
        unsigned char* const out = call.query ? nullptr : kept.back().get();
        if (call.function == "SOF_ReadFile") {
            kvl.SOF_ReadFile(g_service.context, call.arguments[0].c_str(),
                             call.arguments[1].c_str(), out, &length);
        } else if (call.function == "EnumFilesInDevice") {
            kvl.EnumFilesInDevice(g_service.context, call.arguments[0].c_str(), out, &length);
        } else if (call.function == "GetDeviceInfo") {
            kvl.GetDeviceInfo(g_service.context, call.arguments[0].c_str(), 7, out, &length);
        } else if (call.function == "SOF_GetUserList") {
            kvl.SOF_GetUserList(g_service.context, out, &length);
        } else if (call.function == "GetDeviceCountEx") {
            kvl.GetDeviceCountEx(g_service.context, 1, &length);
        }
    }
}

void Enumeration(benchmark::State& state) {
    for (auto _ : state) {
        if (g_list.GetCertAndPic() != 0) state.SkipWithError("no list");
        fakes::ClearCalls();
    }
}
BENCHMARK(Enumeration)->Unit(benchmark::kMicrosecond);

void BareReadsAndRecords(benchmark::State& state) {
    std::filesystem::remove(fakes::LogPath());
    g_list.GetCertAndPic();
    const std::vector<fakes::Call> calls = fakes::Calls();
    const std::vector<std::string> messages = Messages(LogText());
    for (auto _ : state) {
        Kept kept;
        Replay(calls, kept);
        for (const std::string& message : messages) {
            WriteLog("CertEsealOpt", 1, kLogTrace, 0, "%s", message.c_str());
        }
        fakes::ClearCalls();
    }
    state.counters["calls"] = static_cast<double>(calls.size());
    state.counters["records"] = static_cast<double>(messages.size());
}
BENCHMARK(BareReadsAndRecords)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int count, char** arguments) {
    const TemporaryPrefix prefix;
    prefix.RegisterCertService(SERVICE_FILE);
    MakeWorld();
    if (KVLInitialize(g_service) != 0) return 2;
    fakes::ClearCalls();
    const int result =
        RunRatios(count, arguments,
                  {{"20 certificates with 10 seals", "Enumeration", "BareReadsAndRecords", 1.2}});
    KVLUnInitialize(g_service);
    return result;
}
