#include "TarnCore/files/TypeFacts.h"

#include <functional>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>
#include <utility>

#include "TarnCore/base/Text.h"
#include "TarnCore/platform/Platform.h"

namespace tarn {
namespace {

struct StringHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const noexcept {
        return std::hash<std::string_view>{}(text);
    }
};

/// Read by every item of a listing and written once per type, hence the shared lock.
struct Table {
    std::shared_mutex mutex;
    std::shared_ptr<ContentTypes> types;
    std::unordered_map<std::string, TypeFacts, StringHash, std::equal_to<>> facts;
};

Table& table() {
    static Table instance;
    return instance;
}

FileKind kindOf(const ContentTypes& types, std::string_view type) {
    static constexpr std::pair<std::string_view, FileKind> rules[] = {
        {ContentType::image, FileKind::image},
        {ContentType::movie, FileKind::video},
        {ContentType::video, FileKind::video},
        {ContentType::audio, FileKind::audio},
        {ContentType::archive, FileKind::archive},
        {ContentType::diskImage, FileKind::archive},
        {ContentType::sourceCode, FileKind::code},
        {ContentType::script, FileKind::code},
        {ContentType::pdf, FileKind::document},
        {ContentType::text, FileKind::document},
        {ContentType::presentation, FileKind::document},
        {ContentType::spreadsheet, FileKind::document},
        {ContentType::rtf, FileKind::document},
    };
    for (const auto& [ancestor, kind] : rules)
        if (types.conforms(type, ancestor)) return kind;
    return FileKind::other;
}

TypeFacts ask(const ContentTypes& types, std::string_view type) {
    TypeFacts facts;
    if (auto description = types.description(type); description && !description->empty())
        facts.kindName = Text::withFirstRaised(*description);  // "plain text document"
    facts.isApplication = types.conforms(type, ContentType::application) ||
                          types.conforms(type, ContentType::applicationBundle);
    facts.kind = kindOf(types, type);
    return facts;
}

}  // namespace

TypeFacts typeFacts(std::string_view type) {
    const std::shared_ptr<ContentTypes>& types = Platform::current().types;
    Table& shared = table();
    {
        const std::shared_lock lock(shared.mutex);
        if (shared.types == types)
            if (const auto found = shared.facts.find(type); found != shared.facts.end())
                return found->second;
    }
    TypeFacts facts = ask(*types, type);  // may read the MIME database, so without the lock
    const std::unique_lock lock(shared.mutex);
    if (shared.types != types) {
        shared.facts.clear();
        shared.types = types;
    }
    shared.facts.insert_or_assign(std::string(type), facts);
    return facts;
}

}  // namespace tarn
