#include "TarnCore/archive/OpenArchive.h"

#include <cerrno>
#include <string_view>
#include <system_error>

#include "TarnCore/base/Locale.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/ArchiveError.h"
#include "TarnCore/files/FileKind.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

constexpr std::string_view compressedExtensions[] = {"gz",   "bz2", "xz",  "zst",
                                                     "lzma", "lz",  "lz4", "z"};

bool isSingleFileName(std::string_view name) {
    const std::string lower = Text::lowercasedASCII(name);
    const std::string_view ext = pathExtension(lower);
    for (const std::string_view known : compressedExtensions) {
        if (ext != known) continue;
        return !std::string_view(lower).substr(0, lower.size() - ext.size() - 1).ends_with(".tar");
    }
    return false;
}

std::shared_ptr<const FileBytes> open(const URL& url) {
    const auto& archives = Platform::current().archives;
    if (!archives) throw ArchiveError::unsupported();
    try {
        return archives->open(url, Links::follow);
    } catch (const std::system_error& error) {
        const int errnum = error.code().value();
        if (errnum == EISDIR || errnum == EINVAL) throw ArchiveError::unsupported();
        throw ArchiveError::unreadable(systemErrorSentence(errnum));
    }
}

}  // namespace

OpenArchive::OpenArchive(const URL& url) : OpenArchive(open(url), url) {}

OpenArchive::OpenArchive(std::shared_ptr<const FileBytes> bytes, const URL& url)
    : url_(url), bytes_(std::move(bytes)) {
    try {
        recognise();
    } catch (const std::system_error& error) {
        throw ArchiveError::unreadable(systemErrorSentence(error.code().value()));
    }
}

void OpenArchive::recognise() {
    if (ZipDirectory::isZip(*bytes_)) {
        directory_ = ZipDirectory::read(*bytes_, Locale::current().identifier());
        form_ = Form::zip;
        return;
    }
    const bool isSingle = isSingleFileName(url_.name());
    const bool isArchiveName =
        FileKinds::isBrowsableArchiveExtension(Text::lowercased(url_.pathExtension()));
    for (const Form form : {Form::singleFile, Form::archive}) {
        if (form == Form::singleFile && !isSingle) continue;
        form_ = form;
        ArchiveMember member;
        const ArchiveStream::Result result = stream()->next(member);
        if (result == ArchiveStream::Result::unrecognised) continue;
        // A run of zeroes is an empty tar file only when it is called one.
        if (result != ArchiveStream::Result::end || isSingle || isArchiveName) return;
    }
    if (isArchiveName) throw ArchiveError::incomplete();
    throw ArchiveError::unsupported();
}

std::unique_ptr<ArchiveStream> OpenArchive::stream() const {
    auto stream = Platform::current().archives->stream(bytes_, form_ == Form::singleFile
                                                                   ? ArchiveStream::Form::singleFile
                                                                   : ArchiveStream::Form::archive);
    if (!stream) throw ArchiveError::unsupported();
    return stream;
}

std::string OpenArchive::singleName() const {
    const std::string_view name = url_.name();
    return std::string(name.substr(0, name.rfind('.')));
}

bool OpenArchive::next(ArchiveStream& stream, ArchiveMember& member) {
    switch (stream.next(member)) {
        case ArchiveStream::Result::found:
            return true;
        case ArchiveStream::Result::end:
            return false;
        case ArchiveStream::Result::unrecognised:
            throw ArchiveError::unsupported();
        case ArchiveStream::Result::failed:
            break;
    }
    throw ArchiveError::fromLibrary(stream.failure());
}

}  // namespace tarn
