#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QtCore/QString>

#include "Tarn/model/ActivityTask.h"
#include "TarnCore/base/URL.h"

namespace tarn {

/// Members of archives as files of their own, for opening, copying and dragging them out.
///
/// The files lie in a private temporary folder that goes with this object. Callable from any
/// thread; the object outlives the calls.
class ArchiveMembers {
public:
    ArchiveMembers();
    ~ArchiveMembers();
    ArchiveMembers(const ArchiveMembers&) = delete;
    ArchiveMembers& operator=(const ArchiveMembers&) = delete;

    /// Unpacks members into a new folder inside the temporary one and returns where each is now.
    /// With `readOnly` the files cannot be written, so that nobody edits a copy by mistake.
    /// Throws ArchiveError.
    std::vector<URL> take(const URL& archive, const std::vector<std::string>& members,
                          bool readOnly, ActivityTask::Handle* handle = nullptr);

    /// “Unpacking “a.txt”” and how far: what ArchiveReader reports, told to an activity.
    static void watch(ActivityTask::Handle& handle, const std::string& currentName,
                      std::int64_t doneBytes, std::int64_t totalBytes);

private:
    URL folder();

    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace tarn
