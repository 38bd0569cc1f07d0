#include "Tarn/model/VolumeQueues.h"

#include <map>
#include <memory>

#include "TarnCore/base/Guarded.h"

namespace tarn::VolumeQueues {
namespace {

using Queues = Guarded<std::map<URL, std::unique_ptr<SerialQueue>>>;

SerialQueue& queueOf(Queues& queues, const URL& mountPoint, const char* name) {
    auto held = queues.lock();
    auto& queue = (*held)[mountPoint];
    if (!queue) queue = std::make_unique<SerialQueue>(name);
    return *queue;
}

}  // namespace

SerialQueue& asking(const URL& mountPoint) {
    static auto* queues = new Queues;
    return queueOf(*queues, mountPoint, "tarn.volume");
}

SerialQueue& ejecting(const URL& mountPoint) {
    static auto* queues = new Queues;
    return queueOf(*queues, mountPoint, "tarn.eject");
}

SerialQueue& servers() {
    static auto* queue = new SerialQueue("tarn.servers");
    return *queue;
}

}  // namespace tarn::VolumeQueues
