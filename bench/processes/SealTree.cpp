// The tree of twenty certificates with a hundred seals each: how long after the enumeration the
// window is there, and how long after the user's key the preview of another seal is on the screen.
// On an X server whose pixels are looked at.
#include <fcntl.h>
#include <gif_lib.h>
#include <sys/mman.h>
#include <time.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "TesmarkOpt.h"
#include "bench/processes/Process.h"
#include "fakes/World.h"
#include "support/TemporaryFolder.h"
#include "support/TemporaryPrefix.h"
#include "support/linux/XServer.h"

namespace {

constexpr int kCertificates = 20;
constexpr int kSeals = 100;
constexpr int kSide = 600;
constexpr int kSelections = 40;
constexpr double kTreeGoal = 1000;
// Below it a person takes an answer for immediate.
constexpr double kPaintGoal = 100;
constexpr double kPatience = 10'000;

double Now() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1000 + static_cast<double>(now.tv_nsec) / 1e6;
}

// The colour by which a seal is known on the screen, 0xRRGGBB.
std::uint32_t ColourOf(int certificate, int seal) {
    return 0x600000U + static_cast<std::uint32_t>(certificate * 0x0300 + seal) * 2U + 1U;
}

int Append(GifFileType* gif, const GifByteType* bytes, int count) {
    static_cast<std::string*>(gif->UserData)
        ->append(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(count));
    return count;
}

// Half of it in the colour, half noise, so that it has a seal's size.
std::string Picture(std::uint32_t colour) {
    std::string bytes;
    int error = 0;
    GifFileType* const gif = EGifOpen(&bytes, Append, &error);
    const GifColorType colours[4] = {
        {static_cast<GifByteType>(colour >> 16), static_cast<GifByteType>(colour >> 8 & 0xFFU),
         static_cast<GifByteType>(colour & 0xFFU)},
        {255, 255, 255},
        {200, 0, 0},
        {0, 0, 0}};
    ColorMapObject* const map = GifMakeMapObject(4, colours);
    EGifPutScreenDesc(gif, kSide, kSide, 2, 0, map);
    EGifPutImageDesc(gif, 0, 0, kSide, kSide, false, nullptr);
    std::minstd_rand noise(colour);
    std::vector<GifPixelType> row(kSide);
    for (int y = 0; y < kSide; ++y) {
        for (int x = 0; x < kSide; ++x) {
            row[static_cast<std::size_t>(x)] =
                static_cast<GifPixelType>(x < kSide / 2 ? 0U : 1U + noise() / 8 % 2);
        }
        EGifPutLine(gif, row.data(), kSide);
    }
    EGifCloseFile(gif, &error);
    GifFreeMapObject(map);
    return bytes;
}

bool MakeKeys(const TemporaryPrefix& prefix) {
    for (int i = 0; i < kCertificates; ++i) {
        const std::string name = "c" + std::to_string(i);
        if (Run({TESMARK, "key", "new", "--name", name, "--id", name, "--algorithm", "sm2", "--pin",
                 "12345678"})
                .milliseconds < 0) {
            return false;
        }
        for (int k = 0; k < kSeals; ++k) {
            const std::string seal =
                fakes::EsSeal(Picture(ColourOf(i, k)), "seal " + std::to_string(k));
            const std::string folder = prefix.Below("keys/" + name + "/files/");
            std::filesystem::create_directories(folder);
            std::ofstream(folder + "ESEAL" + std::to_string(100 + k), std::ios::binary) << seal;
        }
    }
    return true;
}

// What the clock between library and program has noted.
class CTimes {
public:
    explicit CTimes(std::string path) : m_path(std::move(path)) {}

    struct Note {
        double at = 0;
        std::string text;
    };
    std::vector<Note> All() const {
        std::vector<Note> notes;
        std::ifstream file(m_path);
        for (Note note; file >> note.at && std::getline(file >> std::ws, note.text);) {
            notes.push_back(note);
        }
        return notes;
    }
    // The last note of this text once there are `count` of them.
    std::optional<Note> Wait(const std::string& text, int count) const {
        for (const double end = Now() + kPatience; Now() < end; Pause()) {
            const auto notes = All();
            const auto is = [&](const Note& note) { return note.text == text; };
            if (std::count_if(notes.begin(), notes.end(), is) < count) continue;
            return *std::find_if(notes.rbegin(), notes.rend(), is);
        }
        return {};
    }
    // The node that was selected last; 0 without one.
    int Node() const {
        int node = 0;
        for (const Note& note : All()) std::sscanf(note.text.c_str(), "node\t1004\t%d", &node);
        return node;
    }

    static void Pause() {
        const timespec pause{0, 500'000};
        nanosleep(&pause, nullptr);
    }

private:
    std::string m_path;
};

// The pixels of an X server's screen.
class CScreen {
public:
    explicit CScreen(const std::string& folder) {
        const std::string path = folder + "/Xvfb_screen0";
        m_size = std::filesystem::file_size(path);
        const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        m_bytes = static_cast<const unsigned char*>(
            mmap(nullptr, m_size, PROT_READ, MAP_SHARED, file, 0));
        m_pixels = Header(0) + Header(19) * 12;
    }

    // Whether a field of this colour stands there, rather than a stray pixel.
    bool Shows(std::uint32_t colour) const {
        const auto* const pixels = reinterpret_cast<const std::uint32_t*>(m_bytes + m_pixels);
        const std::size_t count = Header(4) * Header(5);
        return std::count_if(pixels, pixels + count, [&](std::uint32_t pixel) {
                   return (pixel & 0xFFFFFFU) == colour;
               }) > 100;
    }

private:
    // Numbers of the header are big-endian.
    std::size_t Header(std::size_t index) const {
        const unsigned char* const at = m_bytes + index * 4;
        return static_cast<std::size_t>(at[0]) << 24 | static_cast<std::size_t>(at[1]) << 16 |
               static_cast<std::size_t>(at[2]) << 8 | at[3];
    }

    std::size_t m_size = 0;
    std::size_t m_pixels = 0;
    const unsigned char* m_bytes = nullptr;
};

struct Times {
    double tree = -1;             // from the program's start to its window
    std::vector<double> painted;  // from a key to the seal's colour on the screen
};

bool Type(const std::string& keys) {
    return std::system(("xdotool key " + keys + " >/dev/null 2>&1").c_str()) == 0;
}

// Milliseconds until the screen shows the selected seal; negative if it doesn't.
double UntilPainted(const CScreen& screen, int node, double pressed) {
    // The root is 1; each certificate is followed by its seals.
    const int place = node - 2;
    const std::uint32_t colour = ColourOf(place / (kSeals + 1), place % (kSeals + 1) - 1);
    for (const double end = Now() + kPatience; Now() < end; CTimes::Pause()) {
        if (screen.Shows(colour)) return Now() - pressed;
    }
    return -1;
}

Times Use(const CTimes& clock, const CScreen& screen) {
    Times times;
    const auto started = clock.Wait("started", 1);
    const auto shown = clock.Wait("shown", 1);
    if (!started || !shown) return times;
    times.tree = shown->at - started->at;
    Type("Tab Tab Down");
    if (!clock.Wait("done", 1)) return times;
    for (int i = 0; i < kSelections; ++i) {
        Type("Down");
        // The key is there with the program's report at the latest.
        const auto selected = clock.Wait("selected\t1004", i + 2);
        if (!selected) break;
        const double time = UntilPainted(screen, clock.Node(), selected->at);
        if (time < 0) break;
        times.painted.push_back(time);
    }
    Type("Escape");
    return times;
}

}  // namespace

int main() {
    const TemporaryPrefix prefix;
    const TemporaryFolder folder;
    prefix.RegisterCertService(SERVICE_FILE);
    const XServer server(folder.Path());
    if (server.Display().empty() || !MakeKeys(prefix)) return 2;
    if (Run({TESMARK, "config", "set", "DialogProgram", DIALOG_CLOCK}).milliseconds < 0) return 2;
    setenv("DISPLAY", server.Display().c_str(), 1);
    setenv("QT_QPA_PLATFORM", "xcb", 1);
    std::filesystem::permissions(folder.Path(), std::filesystem::perms::owner_all);
    setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1);
    const std::string path = folder.Below("times");
    setenv("DIALOG_TIMES", path.c_str(), 1);
    const CTimes clock(path);
    const CScreen screen(folder.Path());
    Times times;
    std::thread user([&] { times = Use(clock, screen); });
    int length = 0;
    const double asked = Now();
    const int code = GetSealInfo(nullptr, &length);
    user.join();
    UnInitKVLLib();
    if (times.painted.size() != kSelections) {
        std::fprintf(stderr, "code %d, %zu selections\n", code, times.painted.size());
        return 2;
    }
    std::sort(times.painted.begin(), times.painted.end());
    const auto started = clock.All().front().at - asked;
    const double paint = times.painted.back();
    std::printf("tree of %d seals: %.0f ms after their enumeration of %.0f ms, goal %.0f%s\n",
                kCertificates * kSeals, times.tree, started, kTreeGoal,
                times.tree <= kTreeGoal ? "" : ": MISSED");
    std::printf("another seal's preview: %.1f ms, at most %.1f, goal %.0f%s\n",
                times.painted[times.painted.size() / 2], paint, kPaintGoal,
                paint <= kPaintGoal ? "" : ": MISSED");
    return times.tree <= kTreeGoal && paint <= kPaintGoal ? 0 : 1;
}
