#pragma once

#include <string_view>

namespace tarn {

/// How much longer things take on this machine just now than on a desktop with nothing else to do:
/// what a test allows them is multiplied by it, so that a slow machine, or one that others keep
/// busy, fails none.
namespace MachineStrain {

/// No machine is taken to be slower; there, limits of time say nothing any more.
inline constexpr double most = 10;

/// Of work, as the processor time of some work that is always the same tells: from 1 to `most`.
/// Takes about 5 ms.
double ofWork();

/// Of waiting for a disk, for memory, or for a thread that waits for a processor: from 1 to `most`.
/// Linux says in /proc/pressure for which part of the last ten seconds something had to wait; where
/// it does not, it is 1.
double ofWaits();
/// The same of what one of these files says.
double ofPressure(std::string_view text);

}  // namespace MachineStrain
}  // namespace tarn
