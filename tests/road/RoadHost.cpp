// RoadHost.cpp - a host that loads the library by its path: what tests of loading and of the log
// need in a process of its own.
//
//     road_host COMMAND LIBRARY CERTID PIN [FURTHER]
//
// login: prints LoginIn's code.                  sign: a plain signature, prints its code.
// leave: the same, and ends without UnInitKVLLib. loop: FURTHER times, the library unloaded after
// each, and prints how much the process grew behind the tenth. beside: loads the file FURTHER
// before, then initialises.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Module.h"
#include "road/Resources.h"

namespace {

// The library while it is loaded.
class Host {
public:
    explicit Host(const char* path) : m_library(platform::LoadModule(path)) {
        if (m_library != nullptr) return;
        std::fprintf(stderr, "%s can't be loaded: %d\n", path, platform::LastError());
        std::exit(2);
    }
    ~Host() { platform::FreeModule(m_library); }
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    int Init() { return Find<int()>("InitKVLLib")(); }
    int UnInit() { return Find<int()>("UnInitKVLLib")(); }
    int Login(const char* certId, const char* pin) {
        return Find<int(const char*, const char*)>("LoginIn")(certId, pin);
    }
    int Sign() {
        const auto sign = Find<int(const unsigned char*, int, unsigned char*, int*)>("P1SignData");
        const unsigned char data[] = {1, 2, 3};
        int size = 0;
        if (const int code = sign(data, sizeof data, nullptr, &size)) return code;
        if (size == 0) return 1;
        std::vector<unsigned char> out(static_cast<std::size_t>(size) + 16);
        size = static_cast<int>(out.size());
        return sign(data, sizeof data, out.data(), &size);
    }

private:
    template <typename Function>
    Function* Find(const char* name) {
        return reinterpret_cast<Function*>(platform::FindSymbol(m_library, name));
    }

    platform::ModuleHandle m_library;
};

int SignOnce(Host& host, const char* certId, const char* pin) {
    if (const int code = host.Login(certId, pin)) return code;
    return host.Sign();
}

int Loop(char** arguments) {
    constexpr int kWarm = 10;
    Resources warm;
    for (int i = 0, rounds = std::atoi(arguments[5]); i < rounds; ++i) {
        {
            Host host(arguments[2]);
            if (const int code = SignOnce(host, arguments[3], arguments[4])) return code;
            host.UnInit();
        }
        if (i + 1 == kWarm) warm = CurrentResources();
    }
    const Resources now = CurrentResources();
    std::printf("heap %ld objects %d descriptors %d\n", now.heapBytes - warm.heapBytes,
                now.objects - warm.objects, now.descriptors - warm.descriptors);
    return 0;
}

int Run(char** arguments) {
    const std::string_view command = arguments[1];
    if (command == "loop") return Loop(arguments);
    if (command == "beside" && platform::LoadModule(arguments[5]) == nullptr) return 3;
    // Never unloaded: this is a host that ends as it stands.
    static Host* const host = new Host(arguments[2]);
    if (command == "beside") {
        host->Init();
        return 0;
    }
    const int code = command == "login" ? host->Login(arguments[3], arguments[4])
                                        : SignOnce(*host, arguments[3], arguments[4]);
    if (command != "leave") host->UnInit();
    std::printf("%d\n", code);
    return 0;
}

}  // namespace

int main(int count, char** arguments) {
    if (count < 5) return 2;
    return Run(arguments);
}
