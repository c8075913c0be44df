// WindowedHost.cpp - a host with a window of its own: each click on its button asks for a seal, as
// a host does that knows of no dialog.
//   windowed_host PIN CLICKS CERTID...
// Opens the keys with the PIN, clicks that often, and tells a line for each click, "code length".
// Then what it holds after ten clicks and after the last, "descriptors A B" and "kilobytes A B",
// and "children none" or "children left".
#include <sys/wait.h>

#include <QApplication>
#include <QPushButton>
#include <QTimer>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "TesmarkOpt.h"

namespace {

constexpr int kWarm = 10;

struct Held {
    int descriptors = 0;
    int kilobytes = 0;
};

Held HeldNow() {
    Held held;
    for ([[maybe_unused]] const auto& entry :
         std::filesystem::directory_iterator("/proc/self/fd")) {
        ++held.descriptors;
    }
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) held.kilobytes = std::atoi(line.c_str() + 6);
    }
    return held;
}

void AskForASeal() {
    ClearSelectKeyID();
    int length = 0;
    int code = GetSealInfo(nullptr, &length);
    if (code == 0) {
        std::vector<unsigned char> picture(static_cast<std::size_t>(length));
        code = GetSealInfo(picture.data(), &length);
    }
    std::printf("%d %d\n", code, code == 0 ? length : 0);
}

}  // namespace

int main(int count, char** arguments) {
    QApplication application(count, arguments);
    const int clicks = std::atoi(arguments[2]);
    for (int i = 3; i < count; ++i) {
        if (LoginIn(arguments[i], arguments[1]) != 0) return 2;
    }
    QPushButton button("stamp");
    button.show();
    Held warm;
    int clicked = 0;
    QObject::connect(&button, &QPushButton::clicked, [&] {
        AskForASeal();
        if (++clicked == kWarm) warm = HeldNow();
        if (clicked == clicks) application.quit();
    });
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &button, &QPushButton::click);
    timer.start(0);
    application.exec();
    timer.stop();
    const Held held = HeldNow();
    std::printf("descriptors %d %d\n", warm.descriptors, held.descriptors);
    std::printf("kilobytes %d %d\n", warm.kilobytes, held.kilobytes);
    const bool childless = waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD;
    std::printf("children %s\n", childless ? "none" : "left");
    UnInitKVLLib();
    return 0;
}
