#include "TarnCore/ops/TransferBatch.h"

#include <string>

namespace tarn {
namespace {

constexpr std::int64_t largestFile = 1 << 20;
constexpr std::int64_t mostBytes = 32 << 20;
constexpr std::size_t mostFiles = 1024;

}  // namespace

/// Of a file with several names, the copies are put together by their paths.
bool TransferBatch::takes(const FileAttributes& facts) {
    return facts.type == FileType::file && facts.links == 1 && facts.size <= largestFile;
}

bool TransferBatch::hasRoomFor(const URL& target, const FileAttributes& facts) const {
    return files_.empty() || (files_.size() < mostFiles && bytes_ + facts.size <= mostBytes &&
                              target.parent() == folder_);
}

void TransferBatch::add(const URL& source, const URL& target, const FileAttributes& facts) {
    if (files_.empty()) folder_ = target.parent();
    files_.push_back({source, std::string(target.name())});
    targets_.insert(target);
    bytes_ += facts.size;
}

}  // namespace tarn
