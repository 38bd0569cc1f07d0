#pragma once

#include <span>
#include <string_view>

#include "cli/Command.h"

/// Every command there is, and the options that all of them take.
namespace tarn::cli::CommandTable {

/// By section, then by name.
std::span<const Command* const> all();

/// Null when there is no such command. Of a group, its commands are found by their last words.
const Command* find(std::string_view word);
const Command* find(const Command& group, std::string_view word);

/// Taken before the command and by every command.
std::span<const Option> globalOptions();

/// Taken where no command follows, for the window that opens.
std::span<const Option> windowOptions();

/// What `tarn` itself is, with its usage lines and examples.
std::string_view summary();
std::string_view description();
std::span<const Example> examples();

std::string_view title(Section section);

}  // namespace tarn::cli::CommandTable
