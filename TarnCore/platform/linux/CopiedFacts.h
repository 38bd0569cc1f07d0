#pragma once

#include <cstddef>

#include <sys/stat.h>

#include "TarnCore/platform/linux/CopyContext.h"

namespace tarn {

/// What is kept about an item besides its data: owner, mode, access lists, extended attributes,
/// times. One thread.
class CopiedFacts {
public:
    /// Does not outlive the buffers.
    CopiedFacts(const CopyIdentity& self, CopyBuffers& buffers) : self_(self), buffers_(buffers) {}

    /// Reads the names of the attributes of the item that is copied next.
    void read(int source, CopyPair& pair);

    /// The mode to create a file with, so that it is never open to more people than the original.
    mode_t creationMode(const struct statx& facts, bool isPlain) const;

    struct Target {
        int item;
        bool isPlain;        ///< It was made in a plain folder…
        mode_t createdWith;  ///< …with this mode.
    };
    /// Gives the target all of it, times last. `source` is the item that read() was called for.
    /// Returns false when something was lost that the user may miss.
    bool apply(int source, const struct statx& facts, const Target& target, CopyPair& pair);

    /// For what cannot be opened: links and pipes, which have no attributes of their own.
    void applyByName(const struct statx& facts, int folder, const char* name) const;

private:
    bool isOwn(const struct statx& facts) const {
        return facts.stx_uid == self_.user && facts.stx_gid == self_.group;
    }
    mode_t giveAway(const struct statx& facts, int target) const;
    bool setAttributes(int source, int target, CopyPair& pair, bool afterMode);
    bool set(int source, int target, const char* name, CopyPair& pair);

    const CopyIdentity self_;
    CopyBuffers& buffers_;
    std::size_t length_ = 0;  ///< Of the names.
    bool wasReadInFull_ = true;
    bool hasAccessList_ = false;
};

}  // namespace tarn
