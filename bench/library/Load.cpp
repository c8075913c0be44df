// What loading the library costs a host in C, against a library with nothing in it. Each time is
// that of a fresh process.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int kRounds = 51;
constexpr double kGoalMicroseconds = 1000;

// Microseconds, or a negative number if it can't be loaded.
double LoadOnce(const std::string& library) {
    const std::string command = std::string(HOST) + " " + library;
    const std::unique_ptr<std::FILE, decltype(&pclose)> pipe(popen(command.c_str(), "r"), &pclose);
    long long nanoseconds = 0;
    if (!pipe || std::fscanf(pipe.get(), "%lld", &nanoseconds) != 1) return -1;
    return static_cast<double>(nanoseconds) / 1000;
}

double Median(std::vector<double>& times) {
    const auto middle = times.begin() + std::ssize(times) / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

}  // namespace

int main() {
    setenv("LD_LIBRARY_PATH", STAND_INS, 1);
    std::vector<double> ours;
    std::vector<double> empty;
    for (int i = 0; i < kRounds; ++i) {
        ours.push_back(LoadOnce(LIBRARY));
        empty.push_back(LoadOnce(EMPTY));
    }
    if (*std::min_element(ours.begin(), ours.end()) < 0) return 2;
    const double median = Median(ours);
    const bool reached = median < kGoalMicroseconds;
    std::printf("loading the library: %.0f us, an empty one %.0f us, goal under %.0f us%s\n",
                median, Median(empty), kGoalMicroseconds, reached ? "" : ": MISSED");
    return reached ? 0 : 1;
}
