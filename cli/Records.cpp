#include "cli/Records.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <vector>

#include "TarnCore/base/JSON.h"
#include "TarnCore/base/TaskPool.h"

namespace tarn::cli::Records {
namespace {

/// Items that are worth handing to another thread: about half a millisecond of work.
constexpr std::size_t chunkSize = 1024;

void append(std::string& out, std::span<const FileItem> items,
            std::span<const std::uint32_t> indexes) {
    for (const std::uint32_t& index : indexes) {
        if (&index != &indexes.front()) out += ",\n";
        JSONWriter json(out);
        write(json, items[index]);
    }
}

}  // namespace

void writeArray(Output& out, std::span<const FileItem> items,
                std::span<const std::uint32_t> indexes) {
    if (indexes.empty()) {
        out << "[]";
        return;
    }
    out << "[\n";
    if (indexes.size() <= chunkSize) {
        append(out.buffer(), items, indexes);
    } else {
        TaskPool& pool = TaskPool::shared();
        // A round of chunks at a time bounds the memory that finished text takes.
        std::vector<std::string> texts(8 * (pool.threadCount() + 1));
        bool isFirst = true;
        while (!indexes.empty()) {
            const std::size_t round = std::min(indexes.size(), texts.size() * chunkSize);
            const std::size_t count = (round + chunkSize - 1) / chunkSize;
            pool.forEach(count, [&](std::size_t i) {
                const std::size_t start = i * chunkSize;
                append(texts[i], items, indexes.subspan(start, std::min(chunkSize, round - start)));
            });
            for (std::size_t i = 0; i < count; ++i) {
                if (!isFirst) out << ",\n";
                isFirst = false;
                out << texts[i];
                out.flushIfLarge();
                texts[i].clear();
            }
            indexes = indexes.subspan(round);
        }
    }
    out << "\n]";
    out.flushIfLarge();
}

void writeArray(Output& out, std::span<const FileItem> items) {
    std::vector<std::uint32_t> indexes(items.size());
    std::iota(indexes.begin(), indexes.end(), 0U);
    writeArray(out, items, indexes);
}

}  // namespace tarn::cli::Records
