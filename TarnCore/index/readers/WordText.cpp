#include "TarnCore/index/readers/WordText.h"

#include <unistd.h>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/base/URL.h"
#include "TarnCore/index/readers/TextBuilder.h"
#include "TarnCore/platform/Shell.h"

namespace tarn::WordText {
namespace {

constexpr double patience = 20;  // seconds; a document of 10 MB takes half of one

}  // namespace

bool isWord(std::string_view bytes) {
    return bytes.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1");
}

std::optional<std::string> read(int file) {
    // Handed over as it is open here: a process that is locked in could not open it again.
    if (lseek(file, 0, SEEK_SET) != 0) return std::nullopt;
    try {
        const auto output = Shell::run(URL::fromPath("/usr/bin/catdoc"), {"-w", "-d", "utf-8"},
                                       std::nullopt, patience, file);
        if (output.status != 0) return std::nullopt;
        TextBuilder text;
        text.addLines(Text::sanitized(output.standardOutput));
        return text.take();
    } catch (const Error&) {
        return std::nullopt;
    }
}

}  // namespace tarn::WordText
