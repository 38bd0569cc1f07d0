#pragma once

#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/base/URL.h"

/// Queues for questions that a dead server may hold for as long as it likes: one for each volume
/// and purpose, kept until the process ends and then left alone, since waiting for one would keep
/// the program from quitting. Callable from any thread.
namespace tarn::VolumeQueues {

/// How full it is.
SerialQueue& asking(const URL& mountPoint);
/// Taking it off the machine, which is what frees one that does not answer.
SerialQueue& ejecting(const URL& mountPoint);
/// Which servers there are.
SerialQueue& servers();

}  // namespace tarn::VolumeQueues
