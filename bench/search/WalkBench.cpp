// tarn-bench-Walk DIR [--runs N] [--query name|kind|dates|nothing]: searches that walk DIR, timed
// inside this process, so that a change to the walk can be seen without the start of a program.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "TarnCore/search/SearchTask.h"
#include "bench/Bench.h"

namespace {

using namespace tarn;

struct Case {
    const char* name;
    SearchQuery query;
};

std::vector<Case> cases() {
    SearchQuery name, rare, nothing, extension, kind, dates;
    name.terms = {"invoice"};
    rare.terms = {"no such name"};
    extension.terms = {"invoice"};
    extension.extensions = {"pdf"};
    kind.kinds = {SearchKind::spreadsheet};
    DateFilter spring;
    spring.start = Date::fromISO8601("2024-03-01T00:00:00Z");
    spring.end = Date::fromISO8601("2024-05-01T00:00:00Z");
    dates.date = spring;
    dates.size = SizeFilter{5'000'000, std::nullopt, "Over 5 MB"};
    return {{"name", name},
            {"nothing", rare},
            {"extension", extension},
            {"kind", kind},
            {"dates", dates}};
}

std::size_t search(const SearchQuery& query, const URL& root) {
    SearchOptions options;
    options.query = query;
    options.roots = {root};
    options.limit = 1'000'000;
    SearchTask task(std::move(options));
    return task.runAll().size();
}

}  // namespace

int main(int argc, char** argv) {
    int runs = 9;
    std::string only, folder;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--runs") == 0 && i + 1 < argc)
            runs = std::max(1, std::atoi(argv[++i]));
        else if (std::strcmp(argv[i], "--query") == 0 && i + 1 < argc)
            only = argv[++i];
        else
            folder = argv[i];
    }
    if (folder.empty()) {
        std::fputs("usage: tarn-bench-Walk DIR [--runs N] [--query NAME]\n", stderr);
        return 2;
    }
    Platform::setCurrent(makeLinuxPlatform());
    const URL root = URL::fromPath(folder);
    for (const Case& c : cases()) {
        if (!only.empty() && only != c.name) continue;
        std::size_t hits = 0;
        const auto seconds = bench::measure(runs, [&] { hits = search(c.query, root); });
        bench::print(std::string(c.name) + " (" + std::to_string(hits) + " hits)", seconds, "ms",
                     1e3);
    }
}
