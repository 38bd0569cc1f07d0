#pragma once

#include <mutex>
#include <utility>

namespace tarn {

/// A value that cannot be reached without its lock.
///
///     Guarded<std::vector<URL>> seen;
///     seen.lock()->push_back(url);       // locked for this expression
///     auto held = seen.lock();           // locked until `held` goes
template <class T>
class Guarded {
public:
    class Access {
    public:
        T* operator->() const { return value_; }
        T& operator*() const { return *value_; }
        /// For waiting on a condition variable.
        std::unique_lock<std::mutex>& mutex() { return lock_; }

    private:
        friend class Guarded;
        Access(std::mutex& mutex, T& value) : lock_(mutex), value_(&value) {}
        std::unique_lock<std::mutex> lock_;
        T* value_;
    };

    Guarded() = default;
    explicit Guarded(T value) : value_(std::move(value)) {}

    [[nodiscard]] Access lock() const { return Access(mutex_, value_); }

private:
    mutable std::mutex mutex_;
    mutable T value_{};
};

}  // namespace tarn
