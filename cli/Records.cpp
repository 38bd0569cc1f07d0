#include "cli/Records.h"

#include <algorithm>
#include <string>
#include <vector>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/TaskPool.h"

namespace tarn::cli::Records {
namespace {

/// Items that are worth handing to another thread: about half a millisecond of work.
constexpr std::size_t chunkSize = 1024;

void append(std::string& out, std::span<const FileItem> items) {
    for (const FileItem& item : items) {
        if (&item != &items.front()) out += ",\n";
        JSONWriter json(out);
        write(json, item);
    }
}

}  // namespace

void writeArray(Output& out, std::span<const FileItem> items) {
    out << '[';
    if (!items.empty()) out << '\n';
    if (items.size() <= chunkSize) {
        append(out.buffer(), items);
    } else {
        TaskPool& pool = TaskPool::shared();
        // A round of chunks at a time bounds the memory that finished text takes.
        std::vector<std::string> texts(4 * (pool.threadCount() + 1));
        bool isFirst = true;
        while (!items.empty()) {
            const std::size_t round = std::min(items.size(), texts.size() * chunkSize);
            const std::size_t count = (round + chunkSize - 1) / chunkSize;
            pool.forEach(count, [&](std::size_t i) {
                texts[i].clear();
                const std::size_t start = i * chunkSize;
                append(texts[i], items.subspan(start, std::min(chunkSize, round - start)));
            });
            for (std::size_t i = 0; i < count; ++i) {
                if (!isFirst) out << ",\n";
                isFirst = false;
                out << texts[i];
                out.flushIfLarge();
            }
            items = items.subspan(round);
        }
    }
    if (out.buffer().empty() || out.buffer().back() != '[') out << '\n';
    out << ']';
    out.flushIfLarge();
}

}  // namespace tarn::cli::Records
