#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/Guarded.h"
#include "TarnCore/platform/Drives.h"
#include "TarnCore/platform/memory/MemoryVolumes.h"

namespace tarn {

/// Drives whose volumes are lines of a MemoryVolumes, and one server, with a password.
class MemoryDrives final : public Drives {
public:
    explicit MemoryDrives(std::shared_ptr<MemoryVolumes> volumes) : volumes_(std::move(volumes)) {}

    /// From now on these keep the volume busy; none let it go.
    void setBlocking(const URL& mountPoint, std::vector<BlockingProcess> processes) {
        state_.lock()->blocking[mountPoint] = std::move(processes);
    }
    /// From now on ejecting fails for this reason; empty mends the drive.
    void failWith(std::string reason) { state_.lock()->failure = std::move(reason); }
    /// The only address that is answered, by `user` with `password`, and the folder that shows it.
    void setServer(std::string address, std::string user, std::string password, URL folder) {
        const auto state = state_.lock();
        state->address = std::move(address);
        state->user = std::move(user);
        state->password = std::move(password);
        state->folder = std::move(folder);
    }

    EjectResult eject(const Mount& volume, const std::string& name, bool force) override {
        {
            const auto state = state_.lock();
            if (!state->failure.empty())
                return {EjectResult::Outcome::failed,
                        "Couldn’t eject “" + name + "”. " + state->failure};
            const auto found = state->blocking.find(volume.mountPoint);
            if (!force && found != state->blocking.end() && !found->second.empty())
                return {EjectResult::Outcome::busy,
                        "Couldn’t eject “" + name + "” because it is in use."};
            std::erase_if(state->servers, [&volume](const Mount& server) {
                return server.mountPoint == volume.mountPoint;
            });
        }
        std::vector<Mount> mounts = volumes_->mounts();
        std::erase_if(mounts, [&volume](const Mount& mount) {
            return mount.mountPoint == volume.mountPoint;
        });
        volumes_->setMounts(std::move(mounts));
        return {};
    }
    std::vector<BlockingProcess> blockingProcesses(const URL& volume) override {
        return state_.lock()->blocking[volume];
    }
    URL connect(const std::string& address, const Ask& ask, const CancelToken& token) override {
        bool isRepeated = false;
        for (;;) {
            {
                const auto state = state_.lock();
                if (address != state->address)
                    throw Error("Couldn’t connect to “" + address + "”.");
            }
            ServerQuestion question;
            question.message = "Password required for " + address;
            question.user = state_.lock()->user;
            question.isRepeated = std::exchange(isRepeated, true);
            const auto answer = ask(question);
            if (!answer || token.isCancelled()) throw Error("Couldn’t connect.");
            const auto state = state_.lock();
            if (answer->user != state->user || answer->password != state->password) continue;
            Mount server;
            server.mountPoint = state->folder;
            server.fileSystem = "memory";
            server.isNetwork = true;
            state->servers.push_back(server);
            return state->folder;
        }
    }
    std::vector<Mount> connectedServers() override { return state_.lock()->servers; }

private:
    struct State {
        std::map<URL, std::vector<BlockingProcess>> blocking;
        std::string failure;
        std::string address;
        std::string user;
        std::string password;
        URL folder;
        std::vector<Mount> servers;
    };
    std::shared_ptr<MemoryVolumes> volumes_;
    Guarded<State> state_;
};

}  // namespace tarn
