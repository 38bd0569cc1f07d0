#pragma once

#include <cstddef>

namespace tarn {

/// A file in memory, for libraries that read it in no other way.
///
/// Pages of it that the disk does not have any more (the file was cut short, the card was pulled
/// out) are zeros, where the kernel would end the process (SIGBUS). For one thread at a time.
class MappedFile {
public:
    /// Throws std::system_error, also when too many are mapped at once.
    MappedFile(int descriptor, std::size_t size);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    /// Not to be written to.
    void* address() const { return address_; }

private:
    void* address_ = nullptr;
    std::size_t size_;
    std::size_t slot_;  ///< In the list that the handler of the signal looks at.
};

}  // namespace tarn
