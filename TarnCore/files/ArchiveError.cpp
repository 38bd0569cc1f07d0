#include "TarnCore/files/ArchiveError.h"

#include "TarnCore/base/Text.h"

namespace tarn {

ArchiveError ArchiveError::unreadable(std::string_view detail) {
    return {Reason::unreadable, "This archive couldn’t be read. " + std::string(detail)};
}

ArchiveError ArchiveError::damaged() { return unreadable("It is damaged."); }

ArchiveError ArchiveError::incomplete() { return unreadable("It is incomplete or damaged."); }

ArchiveError ArchiveError::encrypted() {
    return unreadable("It is encrypted with a password, and Tarn can’t open encrypted archives.");
}

ArchiveError ArchiveError::leadsOut(std::string_view member) {
    return unreadable(Text::quoted(Text::sanitized(member)) +
                      " in it would be written outside of the folder.");
}

ArchiveError ArchiveError::fromLibrary(std::string_view text) {
    const std::string lower = Text::lowercasedASCII(text);
    const auto says = [&](std::string_view words) { return lower.find(words) != lower.npos; };
    if (says("encrypt") || says("passphrase") || says("password")) return encrypted();
    if (says("truncated") || says("premature") || says("unexpected end") || says("end of file"))
        return incomplete();
    if (says("unsupported") || says("not supported"))
        return unreadable("It is packed in a way that Tarn can’t unpack.");
    return damaged();
}

ArchiveError ArchiveError::unsupported() {
    return {Reason::unsupported, "Tarn can’t open this kind of archive."};
}

ArchiveError ArchiveError::disk(const std::string& sentence) { return {Reason::disk, sentence}; }

ArchiveError ArchiveError::cancelled() { return {Reason::cancelled, "It was cancelled."}; }

}  // namespace tarn
