#pragma once

#include <optional>
#include <string_view>

#include "TarnCore/base/Calendar.h"
#include "TarnCore/base/Date.h"
#include "TarnCore/base/Locale.h"
#include "TarnCore/base/URL.h"
#include "cli/Output.h"
#include "cli/Terminal.h"

namespace tarn::cli {

/// What a command works with: its output, its terminal, the present, the user's language. Built
/// lazily, since most runs need little of it and must start in milliseconds. Main thread only.
class Session {
public:
    explicit Session(bool quiet) : quiet_(quiet) {}

    Output& out() { return out_; }
    /// Of the standard output.
    const Terminal& terminal();
    /// Progress is not wanted.
    bool quiet() const { return quiet_; }

    /// A finished sentence on the standard error, the names in it made safe for a terminal.
    static void say(std::string_view sentence);

    /// Where relative paths begin. Throws tarn::Error when the folder has been removed.
    const URL& currentFolder();
    /// An argument as a location.
    URL url(std::string_view argument);
    /// The same for one that has to be a folder; throws ListingError when it is none.
    URL requireFolder(std::string_view argument);

    Date now() const;
    const Locale& locale();
    const Calendar& calendar();
    /// Call before Format is used, which then writes for the user's language and time zone.
    void useLocaleForFormats();

private:
    bool quiet_;
    Output out_{1};
    std::optional<Terminal> terminal_;
    std::optional<URL> currentFolder_;
    std::optional<Locale> locale_;
    std::optional<Calendar> calendar_;
};

}  // namespace tarn::cli
