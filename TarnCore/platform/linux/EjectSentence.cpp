#include "TarnCore/platform/linux/EjectSentence.h"

#include "TarnCore/base/Text.h"

namespace tarn::EjectSentence {

bool isBusy(std::string_view words) {
    const std::string folded = Text::lowercasedASCII(words);
    return folded.find("busy") != folded.npos || folded.find("in use") != folded.npos ||
           folded.find("dissent") != folded.npos;
}

EjectResult busy(const std::string& name) {
    return {EjectResult::Outcome::busy,
            "Couldn’t eject " + Text::quoted(name) + " because it is in use."};
}

EjectResult failed(const std::string& name, const std::string& reason) {
    return {EjectResult::Outcome::failed,
            "Couldn’t eject " + Text::quoted(name) + (reason.empty() ? "." : ". " + reason)};
}

EjectResult of(const std::string& name, std::string_view output) {
    return isBusy(output) ? busy(name) : failed(name, reason(output));
}

std::string reason(std::string_view output) {
    std::string_view last;
    for (const std::string_view line : Text::split(output, '\n')) {
        if (const std::string_view words = Text::trimmed(line); !words.empty()) last = words;
    }
    // “umount: /mnt/disk: must be superuser to unmount.”, “gio: file:///mnt/disk: Not mounted”
    while (true) {
        const std::size_t colon = last.find(": ");
        if (colon == last.npos) break;
        const std::string_view before = last.substr(0, colon);
        const bool isName = before.find(' ') == before.npos || before.starts_with('/');
        if (!isName) break;
        last = Text::trimmed(last.substr(colon + 2));
    }
    if (last.empty()) return {};
    std::string sentence = Text::withFirstRaised(Text::sanitized(last));
    if (!sentence.ends_with('.') && !sentence.ends_with('!') && !sentence.ends_with('?'))
        sentence += '.';
    return sentence;
}

}  // namespace tarn::EjectSentence
