#pragma once

#include <string>

#include "cli/Command.h"

/// The texts of --help, wrapped to 80 columns.
namespace tarn::cli::Help {

std::string program();
std::string command(const Command& command);

/// "-n, --limit N": letter, name and value as they are typed. Without a letter the name stands
/// alone.
std::string spelling(const Option& option);

}  // namespace tarn::cli::Help
