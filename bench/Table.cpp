#include "bench/Table.h"

#include <cstdio>

namespace tarn::bench {
namespace {

std::string milliseconds(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f ms", seconds * 1e3);
    return text;
}

}  // namespace

Table::Table() {
    std::printf("%-42s %20s %20s %22s %7s\n", "", "tarn", "peer", "ratio (min–max)", "goal");
}

void Table::ratio(const std::string& name, const std::string& peer, const Comparison& measured,
                  double goal) {
    char ratio[64];
    std::snprintf(ratio, sizeof ratio, "%.2f (%.2f–%.2f)", measured.ratio.median,
                  measured.ratio.min, measured.ratio.max);
    row(name, milliseconds(measured.ours.median), peer + " " + milliseconds(measured.theirs.median),
        ratio, measured.ratio.median, goal);
}

void Table::bound(const std::string& name, double figure, double goal, const std::string& unit,
                  const std::string& peer) {
    char text[64];
    std::snprintf(text, sizeof text, "%.1f %s", figure, unit.c_str());
    row(name, text, peer, "", figure, goal);
}

void Table::row(const std::string& name, const std::string& ours, const std::string& theirs,
                const std::string& ratio, double figure, double goal) {
    const bool kept = figure <= goal;
    kept_ = kept_ && kept;
    // The dash of a range is three bytes and one column.
    const int width = ratio.find("–") == std::string::npos ? 22 : 24;
    std::printf("%-42s %20s %20s %*s %7.4g%s\n", name.c_str(), ours.c_str(), theirs.c_str(), width,
                ratio.c_str(), goal, kept ? "" : "  MISSED");
    std::fflush(stdout);
}

}  // namespace tarn::bench
