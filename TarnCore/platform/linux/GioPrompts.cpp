#include "TarnCore/platform/linux/GioPrompts.h"

#include <cstddef>

#include "TarnCore/base/Text.h"

namespace tarn {
namespace {

/// No server has more to say; what lies before is dropped.
constexpr std::size_t longestMessage = 64 * 1024;
/// Of gio itself, where its input is no terminal.
constexpr std::string_view echoWarning = "Warning! Password will be echoed";

struct Label {
    std::string_view text;
    GioPrompts::Kind kind;
};
constexpr Label labels[] = {{"User", GioPrompts::Kind::user},
                            {"Domain", GioPrompts::Kind::domain},
                            {"Password", GioPrompts::Kind::password},
                            {"Choice", GioPrompts::Kind::choice}};

/// "User: " or "User [ada]: ".
std::optional<GioPrompts::Prompt> promptOf(std::string_view line) {
    if (!line.ends_with(": ")) return std::nullopt;
    line.remove_suffix(2);
    for (const Label& label : labels) {
        if (!line.starts_with(label.text)) continue;
        std::string_view rest = line.substr(label.text.size());
        GioPrompts::Prompt prompt;
        prompt.kind = label.kind;
        if (rest.empty()) return prompt;
        if (!rest.starts_with(" [") || !rest.ends_with(']')) continue;
        rest.remove_prefix(2);
        rest.remove_suffix(1);
        prompt.proposed = rest;
        return prompt;
    }
    return std::nullopt;
}

/// The words of the choice with that number, "[2] Cancel Login".
std::optional<std::string_view> choiceOf(std::string_view line, std::size_t number) {
    const std::string mark = "[" + std::to_string(number) + "] ";
    if (!line.starts_with(mark)) return std::nullopt;
    return line.substr(mark.size());
}

}  // namespace

std::optional<GioPrompts::Prompt> GioPrompts::add(std::string_view bytes) {
    pending_.append(bytes);
    if (pending_.size() > longestMessage) pending_.erase(0, pending_.size() - longestMessage);
    const std::vector<std::string_view> lines = Text::split(pending_, '\n');
    auto prompt = promptOf(lines.back());
    if (!prompt) return std::nullopt;
    std::vector<std::string> message;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        const auto choice = prompt->kind == Kind::choice
                                ? choiceOf(lines[i], prompt->choices.size() + 1)
                                : std::nullopt;
        if (choice)
            prompt->choices.push_back(Text::sanitized(*choice));
        else if (lines[i] != echoWarning)
            message.push_back(Text::sanitized(lines[i]));
    }
    prompt->message = Text::trimmed(Text::join(message, "\n"));
    prompt->proposed = Text::sanitized(prompt->proposed);
    pending_.clear();
    return prompt;
}

}  // namespace tarn
