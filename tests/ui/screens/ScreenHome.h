#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <QtCore/QTemporaryDir>

#include "TarnCore/base/URL.h"

namespace tarn {

/// The same home folder on every machine: its files with fixed dates, one disk, one stick, and a
/// day that never ends. It is the home of the process from its construction on.
///
/// Made once, before the first thread; removed with everything in it when it goes.
class ScreenHome {
public:
    explicit ScreenHome(const std::string& locale = "en_US");
    ~ScreenHome();
    ScreenHome(const ScreenHome&) = delete;
    ScreenHome& operator=(const ScreenHome&) = delete;

    /// Forgets what windows have stored, and makes the folder Work afresh, whose files screens may
    /// change.
    static void reset();

    /// A file or folder of Work.
    static URL work(std::string_view name);

private:
    QTemporaryDir root_;
};

/// Copies wait before their first byte while such a thing lives.
class HeldCopies {
public:
    HeldCopies();
    ~HeldCopies();
    HeldCopies(const HeldCopies&) = delete;
    HeldCopies& operator=(const HeldCopies&) = delete;
};

}  // namespace tarn
