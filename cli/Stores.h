#pragma once

#include <string>

#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/JSONStore.h"
#include "cli/Session.h"

/// What the commands that change settings and lists have in common.
namespace tarn::cli::Stores {

/// Says so when the file is there but cannot be read, since then it counts as empty.
template <class Value>
void warnIfUnreadable(const JSONStore<Value>& store) {
    if (store.isReadable()) return;
    const std::string name = Text::quoted(store.url().name());
    Session::say(name + " can’t be read and counts as empty. Before it is changed it is kept as " +
                 Text::quoted(std::string(store.url().name()) + ".unreadable") + ".");
}

/// Throws tarn::Error when the disk has refused.
template <class Value>
void save(JSONStore<Value>& store) {
    if (!store.flush()) throw Error("Couldn’t write " + Text::quoted(store.url().path()) + ".");
}

}  // namespace tarn::cli::Stores
