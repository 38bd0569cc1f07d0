#pragma once

#include <cstddef>
#include <string_view>

#include "TarnCore/base/URL.h"

namespace tarn {

/// Reads the notes of programs that crashed and takes care of what they name (ChangeJournal).
namespace JournalRepair {

/// Where the notes are.
URL folder();
inline constexpr std::string_view extension = ".journal";

/// How many items were put back or deleted. Never throws.
std::size_t run();

struct Repaired {
    std::size_t items = 0;
    bool isFinished = true;  ///< Nothing is left that a later start could do.
};
/// The work of one note. Lines that are not understood are skipped. Never throws.
Repaired repair(std::string_view note);

}  // namespace JournalRepair

}  // namespace tarn
