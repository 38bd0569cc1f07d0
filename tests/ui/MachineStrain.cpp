#include "tests/ui/MachineStrain.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>
#include <unordered_map>
#include <vector>

namespace tarn::MachineStrain {
namespace {

constexpr int rounds = 5;
/// Seconds that a desktop of these years takes for one round, built for debugging.
constexpr double usual = 0.001;

double used() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Memory, comparisons and jumps, as models and layouts have them.
std::size_t workARound() {
    std::uint32_t random = 1;
    std::vector<std::string> words;
    for (int i = 0; i < 2000; ++i) {
        random = random * 1'664'525 + 1'013'904'223;
        words.push_back("file " + std::to_string(random));
    }
    std::sort(words.begin(), words.end());
    std::unordered_map<std::string, std::size_t> places;
    for (const std::string& word : words) places.emplace(word, places.size());
    return places.size();
}

}  // namespace

double ofWork() {
    const double begun = used();
    std::size_t all = 0;
    for (int round = 0; round < rounds; ++round) all += workARound();
    if (all == 0) std::abort();  // Nor can the work be left out.
    return std::clamp((used() - begun) / (rounds * usual), 1.0, most);
}

double ofWaits() {
    double strain = 1;
    for (const char* what : {"cpu", "io", "memory"}) {
        std::ifstream file(std::string("/proc/pressure/") + what);
        const std::string text((std::istreambuf_iterator<char>(file)), {});
        strain = std::max(strain, ofPressure(text));
    }
    return strain;
}

double ofPressure(std::string_view text) {
    constexpr std::string_view key = "some avg10=";
    const std::size_t place = text.find(key);
    if (place == text.npos) return 1;
    const double percent =
        std::strtod(std::string(text.substr(place + key.size())).c_str(), nullptr);
    // Whoever gets on for a tenth of the time takes ten times as long.
    return std::clamp(100 / std::max(100 - percent, 1.0), 1.0, most);
}

}  // namespace tarn::MachineStrain
