#include "TarnCore/platform/linux/PlainTool.h"

#include <algorithm>
#include <iterator>

#include <unistd.h>

#include "TarnCore/platform/ProgramPath.h"

namespace tarn::PlainTool {
namespace {

/// LANGUAGE goes before LC_ALL where the locale is not the bare "C".
constexpr std::string_view language[] = {"LC_ALL=C.UTF-8", "LANGUAGE=C"};

bool isOfLanguage(std::string_view variable) {
    return std::any_of(std::begin(language), std::end(language), [variable](std::string_view ours) {
        return variable.starts_with(ours.substr(0, ours.find('=') + 1));
    });
}

}  // namespace

std::vector<std::string> environment() {
    std::vector<std::string> variables(std::begin(language), std::end(language));
    for (char** one = environ; one && *one; ++one)
        if (!isOfLanguage(*one)) variables.emplace_back(*one);
    return variables;
}

std::optional<Shell::Output> run(std::string_view name, std::vector<std::string> arguments,
                                 double timeout) {
    const auto tool = findProgram(name);
    const auto env = findProgram("env");
    if (!tool || !env) return std::nullopt;
    arguments.insert(arguments.begin(), tool->path());
    arguments.insert(arguments.begin(), std::begin(language), std::end(language));
    return Shell::run(*env, arguments, std::nullopt, timeout);
}

}  // namespace tarn::PlainTool
