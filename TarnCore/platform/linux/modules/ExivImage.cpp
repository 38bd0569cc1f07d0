#include "TarnCore/platform/linux/modules/ExivImage.h"

#include <algorithm>
#include <cerrno>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include <exiv2/exiv2.hpp>

#include "TarnCore/platform/linux/modules/FileCursor.h"
#include "TarnCore/platform/linux/modules/MappedFile.h"

namespace tarn::ExivImage {
namespace {

#if EXIV2_TEST_VERSION(0, 28, 0)
using Count = std::size_t;
using Offset = std::int64_t;
using Place = std::size_t;
using Path = const std::string&;
using Pointer = Exiv2::BasicIo::UniquePtr;
#else
using Count = long;
using Offset = long;
using Place = long;
using Path = std::string;
using Pointer = Exiv2::BasicIo::AutoPtr;
#endif

/// What the library reads instead of a file that it opened. Writing is refused.
class Input final : public Exiv2::BasicIo {
public:
    explicit Input(const LinuxFileBytes& file) : file_(file), cursor_(file) {}
    Input(const Input&) = delete;
    Input& operator=(const Input&) = delete;

    int open() override {
        isAtEnd_ = false;
        return cursor_.moveTo(0) ? 0 : 1;
    }
    int close() override { return munmap(); }

    Exiv2::DataBuf read(Count size) override {
        // A broken file may ask for more than there is memory for.
        const std::int64_t left = std::max<std::int64_t>(0, cursor_.size() - cursor_.place());
        std::vector<Exiv2::byte> bytes(static_cast<std::size_t>(
            std::min(left, std::max<std::int64_t>(0, static_cast<std::int64_t>(size)))));
        const Count got = read(bytes.data(), static_cast<Count>(bytes.size()));
        if (got < size) isAtEnd_ = true;
        return {bytes.data(), got};
    }
    Count read(Exiv2::byte* into, Count size) override {
        if (static_cast<std::int64_t>(size) <= 0) return 0;
        const auto wanted = static_cast<std::size_t>(size);
        const std::size_t got = cursor_.read({reinterpret_cast<char*>(into), wanted});
        if (got < wanted) isAtEnd_ = true;
        return static_cast<Count>(got);
    }
    int getb() override {
        Exiv2::byte one = 0;
        return read(&one, 1) == 1 ? one : EOF;
    }
    int seek(Offset offset, Position from) override {
        std::int64_t base = 0;
        if (from == cur) base = cursor_.place();
        if (from == end) base = cursor_.size();
        std::int64_t to = 0;
        if (__builtin_add_overflow(base, std::int64_t{offset}, &to) || !cursor_.moveTo(to))
            return 1;
        isAtEnd_ = false;
        return 0;
    }

    /// The forms that cameras store raw pictures in are looked at like this: of some fifty
    /// megabytes only the few pages are read that say something.
    Exiv2::byte* mmap(bool isWriteable) override {
        if (isWriteable) throw std::system_error(EROFS, std::generic_category(), "mmap");
        if (!mapped_) mapped_.emplace(file_.descriptor(), size());
        // The library wants it so, and knows that it must not write.
        return static_cast<Exiv2::byte*>(mapped_->address());
    }
    int munmap() override {
        mapped_.reset();
        return 0;
    }

    Place tell() const override { return static_cast<Place>(cursor_.place()); }
    std::size_t size() const override { return static_cast<std::size_t>(cursor_.size()); }
    bool isopen() const override { return true; }
    int error() const override { return 0; }
    bool eof() const override { return isAtEnd_; }
    Path path() const noexcept override { return path_; }
    void populateFakeData() override {}

    Count write(const Exiv2::byte*, Count) override { return 0; }
    Count write(Exiv2::BasicIo&) override { return 0; }
    int putb(Exiv2::byte) override { return EOF; }
    void transfer(Exiv2::BasicIo&) override {
        throw std::system_error(EROFS, std::generic_category(), "write");
    }

private:
    const LinuxFileBytes& file_;
    FileCursor cursor_;
    std::optional<MappedFile> mapped_;
    bool isAtEnd_ = false;
    const std::string path_;  ///< None: the library must not open it by itself.
};

void prepare() {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    // The XMP toolkit shares state between threads and wants a lock for it.
    static std::recursive_mutex mutex;
    Exiv2::XmpParser::initialize(
        [](void* data, bool isLocking) {
            auto* shared = static_cast<std::recursive_mutex*>(data);
            isLocking ? shared->lock() : shared->unlock();
        },
        &mutex);
#if defined(EXV_ENABLE_BMFF) && !EXIV2_TEST_VERSION(0, 28, 0)
    Exiv2::enableBMFF(true);  // HEIC, AVIF, CR3; from 0.28 on by itself
#endif
}

}  // namespace

std::unique_ptr<Exiv2::Image> open(const LinuxFileBytes& file) {
    static std::once_flag isPrepared;
    std::call_once(isPrepared, prepare);
    return std::unique_ptr<Exiv2::Image>(
        Exiv2::ImageFactory::open(Pointer(new Input(file))).release());
}

}  // namespace tarn::ExivImage
