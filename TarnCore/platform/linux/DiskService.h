#pragma once

#include <string>

namespace tarn {

/// The system's disk service (udisks2) over D-Bus. It lives in a module that is loaded when it is
/// first needed, as all that needs GIO does. Callable from any thread; waits for the disk.
class DiskService {
public:
    virtual ~DiskService() = default;

    struct Answer {
        /// False where there is no such service, or it does not know the volume: another way must
        /// be taken.
        bool isKnown = false;
        std::string error;    ///< Name of the error, "org.freedesktop.UDisks2.Error.DeviceBusy"; or
                              ///< empty: it is done.
        std::string message;  ///< In words of the service.
    };

    /// Unmounts what is mounted at that path. Without `force`, what is encrypted is locked, and the
    /// medium is put out or the drive switched off, as far as the drive can do that and nothing
    /// else of it is mounted; that this fails does not count, since all is written by then.
    virtual Answer eject(const std::string& mountPoint, bool force) const = 0;
};

/// The module exports one function of this type and name, which returns null when the module was
/// built for another version of the interface. What it returns lives as long as the process.
using DiskServiceEntry = const DiskService*(int version);
inline constexpr int diskServiceVersion = 1;
inline constexpr const char* diskServiceSymbol = "tarnDiskService";

/// Loads the module at the first call; null when it is not installed. Callable from any thread.
const DiskService* loadDiskService();

}  // namespace tarn
