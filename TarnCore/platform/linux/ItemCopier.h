#pragma once

#include <cstdint>
#include <memory>

#include <sys/stat.h>

#include "TarnCore/platform/linux/CopiedFacts.h"
#include "TarnCore/platform/linux/CopyContext.h"

namespace tarn {

/// Copies single items that are not folders, from folder to folder by descriptors, and never onto
/// an existing name. Keeps its buffers for the next item. One thread.
class ItemCopier {
public:
    explicit ItemCopier(CopyContext& context);
    ~ItemCopier();
    ItemCopier(const ItemCopier&) = delete;
    ItemCopier& operator=(const ItemCopier&) = delete;

    struct Item {
        int sourceFolder;
        const char* name;
        unsigned char type;  ///< DT_REG and so on, DT_UNKNOWN where not known.
        int targetFolder;
        const char* targetName;
        bool isPlain;  ///< See CopiedFolder.
        CopyPair* pair;
        const CopiedFolder* folder;   ///< Null for an item that is the top itself.
        const URL* source = nullptr;  ///< Of one in a batch, whose path `folder` does not know.
    };
    /// Returns 0 or the errno; ECANCELED when the copy is over.
    int copy(const Item& item);

    CopyTicker& ticker() { return ticker_; }
    CopiedFacts& facts() { return facts_; }

private:
    // Each returns 0 or the errno.
    int copyFile(const Item& item);
    int copyVersion(const Item& item, int source, const struct statx& facts);
    int copyBytes(const Item& item, int source, int target, const struct statx& facts);
    int copySegments(const Item& item, int source, int target, std::int64_t size);
    int copySegment(CopyPair& pair, int source, int target, std::int64_t at, std::int64_t end);
    int readAndWrite(int source, int target, std::int64_t at, std::int64_t end);
    int copyLink(const Item& item, const struct statx& facts);
    int copyPipe(const Item& item, const struct statx& facts);
    bool makeName(const Item& item, const CopyRecord::Place& place) const;
    bool tick(int target, std::int64_t position);
    URL url(const Item& item) const;

    CopyContext& context_;
    CopyTicker ticker_;
    std::unique_ptr<CopyBuffers> buffers_;
    CopiedFacts facts_;
    FileID made_;               ///< The copy of the file copied last; only for those with names.
    std::int64_t told_ = 0;     ///< Bytes of the present file that the ticker knows of.
    std::int64_t written_ = 0;  ///< To here the disk has been told to write the file out.
};

}  // namespace tarn
