#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <vector>

#include <archive.h>
#include <archive_entry.h>
#include <locale.h>

#include "TarnCore/platform/linux/LinuxArchives.h"

namespace tarn {
namespace {

/// libarchive turns the names of formats that store Unicode into the character set of the locale,
/// which must therefore be UTF-8, whatever the user's is; for this thread and this call only.
class UTF8Scope {
public:
    UTF8Scope() {
        static const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t{});
        if (utf8) previous_ = uselocale(utf8);
    }
    ~UTF8Scope() {
        if (previous_) uselocale(previous_);
    }
    UTF8Scope(const UTF8Scope&) = delete;
    UTF8Scope& operator=(const UTF8Scope&) = delete;

private:
    locale_t previous_{};
};

struct Free {
    void operator()(archive* reader) const { archive_read_free(reader); }
};

class Stream final : public ArchiveStream {
public:
    Stream(std::shared_ptr<const FileBytes> bytes, Form form)
        : bytes_(std::move(bytes)),
          form_(form),
          reader_(archive_read_new()),
          buffer_(form == Form::archive ? 256 * 1024 : 64 * 1024) {
        const UTF8Scope utf8;
        if (reader_) open();
    }

    Result next(ArchiveMember& member) override;
    Result read(Block& block) override;
    std::int64_t position() const override { return furthest_; }
    std::string failure() const override {
        const char* text = reader_ ? archive_error_string(reader_.get()) : nullptr;
        return text ? text : "";
    }

private:
    void open();
    void describe(archive_entry* entry, ArchiveMember& member) const;
    bool isUnrecognised() const;

    static la_ssize_t onRead(archive*, void* self, const void** data);
    static la_int64_t onSkip(archive*, void* self, la_int64_t count);
    static la_int64_t onSeek(archive*, void* self, la_int64_t offset, int from);

    const std::shared_ptr<const FileBytes> bytes_;
    const Form form_;
    const std::unique_ptr<archive, Free> reader_;
    std::vector<char> buffer_;
    std::int64_t offset_ = 0;
    std::int64_t furthest_ = 0;
    bool isOpen_ = false;
    bool hasMembers_ = false;
};

void Stream::open() {
    archive* reader = reader_.get();
    // One by one, because the rest of the library's list would start other programs.
    archive_read_support_filter_bzip2(reader);
    archive_read_support_filter_compress(reader);
    archive_read_support_filter_gzip(reader);
    archive_read_support_filter_lz4(reader);
    archive_read_support_filter_lzip(reader);
    archive_read_support_filter_lzma(reader);
    archive_read_support_filter_xz(reader);
    archive_read_support_filter_zstd(reader);
    if (form_ == Form::singleFile) {
        archive_read_support_format_raw(reader);
        archive_read_support_format_empty(reader);  // what a compressed empty file holds
    } else {
        // Without “mtree”, which takes any text for a list of files, and “raw”, which takes
        // anything.
        archive_read_support_format_7zip(reader);
        archive_read_support_format_ar(reader);
        archive_read_support_format_cab(reader);
        archive_read_support_format_cpio(reader);
        archive_read_support_format_iso9660(reader);
        archive_read_support_format_lha(reader);
        archive_read_support_format_rar(reader);
        archive_read_support_format_rar5(reader);
        archive_read_support_format_tar(reader);
        archive_read_support_format_xar(reader);
        archive_read_support_format_zip(reader);
    }
    archive_read_set_callback_data(reader, this);
    archive_read_set_read_callback(reader, onRead);
    archive_read_set_skip_callback(reader, onSkip);
    archive_read_set_seek_callback(reader, onSeek);
    isOpen_ = archive_read_open1(reader) == ARCHIVE_OK;
}

la_ssize_t Stream::onRead(archive* reader, void* self, const void** data) {
    auto& stream = *static_cast<Stream*>(self);
    try {
        const std::size_t got = stream.bytes_->read(stream.offset_, stream.buffer_);
        stream.offset_ += static_cast<std::int64_t>(got);
        stream.furthest_ = std::max(stream.furthest_, stream.offset_);
        *data = stream.buffer_.data();
        return static_cast<la_ssize_t>(got);
    } catch (const std::exception& error) {
        archive_set_error(reader, EIO, "%s", error.what());
        return ARCHIVE_FATAL;
    }
}

la_int64_t Stream::onSkip(archive*, void* self, la_int64_t count) {
    auto& stream = *static_cast<Stream*>(self);
    const la_int64_t left = std::max<la_int64_t>(0, stream.bytes_->size() - stream.offset_);
    const la_int64_t skipped = std::min(count, left);
    stream.offset_ += skipped;
    return skipped;
}

la_int64_t Stream::onSeek(archive*, void* self, la_int64_t offset, int from) {
    auto& stream = *static_cast<Stream*>(self);
    std::int64_t base = 0;
    if (from == SEEK_CUR) base = stream.offset_;
    if (from == SEEK_END) base = stream.bytes_->size();
    std::int64_t target = 0;
    if (__builtin_add_overflow(base, offset, &target) || target < 0) return ARCHIVE_FATAL;
    stream.offset_ = target;
    return target;
}

bool Stream::isUnrecognised() const {
    // The library's own number for this is not in its header.
    return !hasMembers_ && failure().find("Unrecognized archive format") != std::string::npos;
}

ArchiveStream::Result Stream::next(ArchiveMember& member) {
    const UTF8Scope utf8;
    if (!reader_) return Result::failed;
    if (!isOpen_) return isUnrecognised() ? Result::unrecognised : Result::failed;
    archive_entry* entry = nullptr;
    const int result = archive_read_next_header(reader_.get(), &entry);
    // What is not compressed is no compressed file, whatever it is called.
    if (form_ == Form::singleFile && archive_filter_code(reader_.get(), 0) == ARCHIVE_FILTER_NONE)
        return Result::unrecognised;
    if (result == ARCHIVE_EOF) return Result::end;
    if (result != ARCHIVE_OK && result != ARCHIVE_WARN)
        return isUnrecognised() ? Result::unrecognised : Result::failed;
    hasMembers_ = true;
    describe(entry, member);
    return Result::found;
}

std::string text(const char* bytes, const char* utf8) {
    if (bytes) return bytes;
    return utf8 ? utf8 : "";
}

void Stream::describe(archive_entry* entry, ArchiveMember& member) const {
    member = {};
    if (form_ == Form::archive)
        member.path = text(archive_entry_pathname(entry), archive_entry_pathname_utf8(entry));
    if (const char* target = archive_entry_hardlink(entry)) {
        member.type = ArchiveMember::Type::hardLink;
        member.target = target;
    } else if (archive_entry_hardlink_utf8(entry)) {
        member.type = ArchiveMember::Type::hardLink;
        member.target = archive_entry_hardlink_utf8(entry);
    } else {
        switch (archive_entry_filetype(entry)) {
            case AE_IFREG:
            case 0:
                member.type = ArchiveMember::Type::file;
                break;
            case AE_IFDIR:
                member.type = ArchiveMember::Type::folder;
                break;
            case AE_IFLNK:
                member.type = ArchiveMember::Type::symlink;
                member.target =
                    text(archive_entry_symlink(entry), archive_entry_symlink_utf8(entry));
                break;
            default:
                member.type = ArchiveMember::Type::other;
        }
    }
    if (archive_entry_size_is_set(entry)) member.size = archive_entry_size(entry);
    if (archive_entry_mtime_is_set(entry)) {
        member.modified = UnixTime{archive_entry_mtime(entry),
                                   static_cast<std::int32_t>(archive_entry_mtime_nsec(entry))};
    }
    if (form_ == Form::archive) {
        const auto mode = static_cast<std::uint32_t>(archive_entry_perm(entry));
        if (mode != 0) member.mode = mode;
    }
    member.isEncrypted = archive_entry_is_encrypted(entry) != 0;
}

ArchiveStream::Result Stream::read(Block& block) {
    const UTF8Scope utf8;
    const void* data = nullptr;
    la_int64_t offset = 0;
    const int result = archive_read_data_block(reader_.get(), &data, &block.size, &offset);
    if (result == ARCHIVE_EOF) return Result::end;
    if (result != ARCHIVE_OK && result != ARCHIVE_WARN) return Result::failed;
    block.data = static_cast<const char*>(data);
    block.offset = offset;
    return Result::found;
}

std::unique_ptr<ArchiveStream> openStream(std::shared_ptr<const FileBytes> bytes,
                                          ArchiveStream::Form form) {
    return std::make_unique<Stream>(std::move(bytes), form);
}

}  // namespace
}  // namespace tarn

extern "C" __attribute__((visibility("default"))) tarn::ArchiveOpening* tarnArchiveOpening(
    int version) {
    return version == tarn::archiveOpeningVersion ? &tarn::openStream : nullptr;
}
