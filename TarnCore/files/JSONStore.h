#pragma once

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "TarnCore/base/Guarded.h"
#include "TarnCore/base/JSON.h"
#include "TarnCore/base/SerialQueue.h"
#include "TarnCore/files/StoreFile.h"
#include "TarnCore/files/SupportDirectory.h"

namespace tarn {

/// What JSONStore does with a document; templates only so that this header can do without the JSON
/// library. They exist for `JSON` alone.
namespace StoredJSON {
template <class Json>
std::optional<Json> parse(std::string_view text);
template <class Json>
std::string text(const Json& document);
/// `ours` with every member that is as `understood` has it left as it stands in `onDisk`, in nested
/// objects too: what was not understood survives unless it was changed.
template <class Json>
Json keepingUnchanged(Json ours, const Json& onDisk, const Json& understood);
}  // namespace StoredJSON

/// What becomes of the keys and values in a stored object that this version of the program does not
/// understand.
enum class UnknownKeys { dropped, kept };

/// One persisted value: a JSON file in the support folder, read when the store is made, written on
/// a queue of its own after every change. Any thread may read or set it; reading and setting never
/// wait for the disk. Sources that use a store include <nlohmann/json.hpp>; headers may name it
/// without.
///
/// Another process may have the same store: a file that was written there since is read afresh and
/// changed anew, so that two processes which change different parts lose neither. A file that
/// cannot be decoded counts as the default value and is kept beside as "NAME.unreadable" when it is
/// first replaced. When a write fails, the value in memory stays in force and goes out with the
/// next.
///
/// `Value` is stored by its to_json and from_json. The file is indented JSON.
template <class Value, class Json = JSON>
class JSONStore {
public:
    using Mutation = std::function<void(Value&)>;

    /// `name` is that of the file in the support folder ("settings.json").
    JSONStore(std::string_view name, std::function<Value()> defaultValue,
              UnknownKeys unknownKeys = UnknownKeys::dropped)
        : JSONStore(SupportDirectory::file(name), std::move(defaultValue), unknownKeys) {}

    JSONStore(URL url, std::function<Value()> defaultValue,
              UnknownKeys unknownKeys = UnknownKeys::dropped)
        : url_(std::move(url)),
          unknownKeys_(unknownKeys),
          file_(StoreFile(url_)),
          state_(State{initialValue(defaultValue), {}}) {}

    JSONStore(const JSONStore&) = delete;
    JSONStore& operator=(const JSONStore&) = delete;

    const URL& url() const { return url_; }

    Value value() const { return state_.lock()->value; }

    /// Replaces the whole, also what another process has written meanwhile.
    void set(Value value) {
        {
            const auto state = state_.lock();
            state->value = value;
            state->pending.clear();
            state->pending.push_back([value = std::move(value)](Value& target) { target = value; });
        }
        queue_.run([this] { save(); });
    }

    /// Changes the value in one step. `mutation` is called at once, and again on the store's queue
    /// when another process has changed the file, so it changes nothing but its argument.
    void update(Mutation mutation) {
        {
            const auto state = state_.lock();
            mutation(state->value);
            state->pending.push_back(std::move(mutation));
        }
        queue_.run([this] { save(); });
    }

    /// Takes over what another process has written since, without writing. True when there was
    /// something. Reads the disk.
    bool refresh() {
        const auto file = file_.lock();
        if (!file->hasChangedOnDisk()) return false;
        auto fresh = decoded(file->read());
        if (!fresh) return false;
        takeOver(std::move(*fresh));
        return true;
    }

    /// Returns when everything set so far has been written, or refused by the disk: false then.
    bool flush() {
        queue_.flush();
        return state_.lock()->pending.empty();
    }

    /// False when the file is there but holds nothing that can be read.
    bool isReadable() const {
        StoreFile file(url_);
        const auto content = file.read();
        return content.state == StoreFile::State::missing || decoded(content).has_value();
    }

private:
    struct State {
        Value value;
        /// What the file does not hold yet, in order.
        std::vector<Mutation> pending;
    };

    static std::optional<Value> decoded(const StoreFile::Content& content) {
        if (content.state != StoreFile::State::present) return std::nullopt;
        const std::optional<Json> document = StoredJSON::parse<Json>(content.text);
        return document ? decoded(*document) : std::nullopt;
    }

    static std::optional<Value> decoded(const Json& document) {
        try {
            return document.template get<Value>();
        } catch (const std::exception&) {  // The library's exceptions, and those of the records.
            return std::nullopt;
        }
    }

    Value initialValue(const std::function<Value()>& defaultValue) const {
        auto stored = decoded(file_.lock()->read());
        return stored ? std::move(*stored) : defaultValue();
    }

    void save() {
        std::optional<Value> value;
        std::vector<Mutation> mutations;
        {
            const auto state = state_.lock();
            if (state->pending.empty()) return;  // An earlier save took it along.
            value = state->value;
            mutations.swap(state->pending);
        }
        bool hasMerged = false;
        const auto file = file_.lock();
        const bool written = file->update([&](const StoreFile::Content& content) {
            return replacement(content, *value, mutations, hasMerged);
        });
        if (written && !hasMerged) return;
        const auto state = state_.lock();
        if (!written) {
            state->pending.insert(state->pending.begin(), mutations.begin(), mutations.end());
            return;
        }
        for (const Mutation& later : state->pending) later(*value);
        state->value = std::move(*value);
    }

    /// What the file shall hold; `value` becomes that too, and `hasMerged` true, when the file held
    /// something new to us.
    StoreFile::Replacement replacement(const StoreFile::Content& content, Value& value,
                                       const std::vector<Mutation>& mutations,
                                       bool& hasMerged) const {
        std::optional<Json> document;
        if (content.state == StoreFile::State::present)
            document = StoredJSON::parse<Json>(content.text);
        std::optional<Value> onDisk = document ? decoded(*document) : std::nullopt;
        const bool isUndecodable = content.state != StoreFile::State::missing && !onDisk;
        Json understood;
        if (onDisk && unknownKeys_ == UnknownKeys::kept) understood = *onDisk;
        if (onDisk && content.hasChanged) {
            value = std::move(*onDisk);
            for (const Mutation& mutation : mutations) mutation(value);
            hasMerged = true;
        }
        Json ours = value;
        if (document && !understood.is_null())
            ours = StoredJSON::keepingUnchanged(std::move(ours), *document, understood);
        return {StoredJSON::text(ours) + "\n", isUndecodable};
    }

    void takeOver(Value fresh) {
        const auto state = state_.lock();
        for (const Mutation& mutation : state->pending) mutation(fresh);
        state->value = std::move(fresh);
    }

    URL url_;
    UnknownKeys unknownKeys_;
    Guarded<StoreFile> file_;
    Guarded<State> state_;
    SerialQueue queue_{"tarn.jsonstore"};  // Last, so that it ends before what its tasks use.
};

}  // namespace tarn
