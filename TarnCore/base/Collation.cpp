#include "TarnCore/base/Collation.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>

#include <unicode/coll.h>
#include <unicode/locid.h>

#include "TarnCore/base/ICU.h"
#include "TarnCore/base/Locale.h"

namespace tarn::Collation {
namespace {

std::unique_ptr<icu::Collator> makeCollator(const std::string& identifier) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale(identifier.c_str()), status));
    if (U_FAILURE(status) || !collator) return nullptr;
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
    collator->setStrength(icu::Collator::SECONDARY);
    return collator;
}

struct Current {
    std::mutex mutex;
    std::string identifier;
    std::shared_ptr<const icu::Collator> collator;
    std::atomic<std::uint64_t> generation = 1;  ///< Grows whenever `identifier` changes.
};

Current& current() {
    static Current instance;
    return instance;
}

/// A collator without attribute changes may be used by any number of threads. Each keeps a share of
/// it, so that the lock is not taken for every name.
const icu::Collator* collator() {
    struct Share {
        std::uint64_t generation = 0;
        std::shared_ptr<const icu::Collator> collator;
    };
    thread_local Share share;
    Current& state = current();
    if (share.generation == state.generation.load(std::memory_order_acquire))
        return share.collator.get();
    const std::lock_guard lock(state.mutex);
    if (!state.collator) {
        if (state.identifier.empty()) state.identifier = Locale::current().identifier();
        state.collator = makeCollator(state.identifier);
        if (!state.collator) state.collator = makeCollator("");
    }
    share = {state.generation.load(std::memory_order_relaxed), state.collator};
    return share.collator.get();
}

}  // namespace

void use(const std::string& localeIdentifier) {
    Current& state = current();
    const std::lock_guard lock(state.mutex);
    state.identifier = localeIdentifier;
    state.collator.reset();
    state.generation.fetch_add(1, std::memory_order_release);
}

int compare(std::string_view a, std::string_view b) {
    const icu::Collator* order = collator();
    UErrorCode status = U_ZERO_ERROR;
    const auto piece = [](std::string_view text) {
        return icu::StringPiece(text.data(), static_cast<int32_t>(text.size()));
    };
    return order ? order->compareUTF8(piece(a), piece(b), status) : a.compare(b);
}

void sortKeyInto(std::string& out, std::string_view text) {
    const icu::Collator* order = collator();
    if (!order) {
        out.assign(text);
        return;
    }
    // Almost every key fits; a longer one is asked for again at its full length.
    std::uint8_t buffer[256];
    const icu::UnicodeString wide = ICU::text(text);
    const int32_t size = order->getSortKey(wide, buffer, sizeof buffer);
    if (size <= static_cast<int32_t>(sizeof buffer)) {
        out.assign(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(size));
        return;
    }
    out.resize(static_cast<std::size_t>(size));
    order->getSortKey(wide, reinterpret_cast<std::uint8_t*>(out.data()), size);
}

std::string sortKey(std::string_view text) {
    std::string out;
    sortKeyInto(out, text);
    return out;
}

}  // namespace tarn::Collation
