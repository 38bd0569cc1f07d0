// Listing one large folder: `tarn-bench-List [FOLDER]`. Without a folder it makes one of 100,000
// files and removes it again.
#include <filesystem>
#include <iostream>
#include <string>

#include <unistd.h>

#include "TarnCore/base/Collation.h"
#include "TarnCore/files/DirectoryLister.h"
#include "TarnCore/files/Format.h"
#include "TarnCore/files/SortOrder.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"
#include "bench/Bench.h"
#include "bench/TreeMaker.h"

namespace {

using namespace tarn;

constexpr int runs = 11;

template <class Body>
void time(const std::string& name, Body&& body) {
    bench::print(name, bench::measure(runs, body), "ms", 1000);
}

void measure(const URL& folder) {
    std::vector<FileItem> items;
    std::vector<ListedName> names;
    time("list", [&] { items = DirectoryLister::list(folder, /*includeHidden=*/true); });
    time("list with attributes", [&] {
        items = DirectoryLister::list(folder, /*includeHidden=*/true, {},
                                      DirectoryLister::AttributeReading::always);
    });
    time("list, and let go",
         [&] { bench::keep(DirectoryLister::list(folder, /*includeHidden=*/true).size()); });
    time("names only", [&] { names = DirectoryLister::names(folder, /*includeHidden=*/true); });
    std::cout << items.size() << " items of " << sizeof(FileItem) << " bytes\n";

    std::vector<FileItem> sorted;
    for (const SortField field : {SortField::name, SortField::modified, SortField::kind})
        time("indexes by " + std::string(SortFields::rawValue(field)),
             [&] { bench::keep(SortOrder{.field = field}.sortedIndexes(items).size()); });
    time("copy and sort by name", [&] { sorted = SortOrder{}.sort(items); });
    time("copy", [&] { bench::keep(std::vector<FileItem>(items).size()); });
    time("copy and sort bare names", [&] {
        std::vector<ListedName> copy = names;
        SortOrder{}.sort(copy);
        bench::keep(copy.size());
    });

    std::string text;
    time("write as JSON", [&] {
        text.clear();
        JSONWriter json(text);
        json.beginArray();
        for (const FileItem& item : sorted) write(json, item);
        json.endArray();
    });
    std::cout << text.size() << " bytes of JSON\n";
    time("write dates and sizes for people", [&] {
        for (const FileItem& item : items) {
            bench::keep(Format::date(item.modified).size());
            bench::keep(Format::bytes(item.size.value_or(0)).size());
        }
    });
}

}  // namespace

int main(int argc, char** argv) {
    Platform::setCurrent(makeLinuxPlatform());
    Collation::use("en_US");
    if (argc > 1) {
        measure(URL::fromPath(argv[1]));
        return 0;
    }
    const std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("tarn-bench-list-" + std::to_string(getpid()));
    bench::TreeMaker().flat(folder.native(), 100'000);
    measure(URL::fromPath(folder.native()));
    std::filesystem::remove_all(folder);
    return 0;
}
