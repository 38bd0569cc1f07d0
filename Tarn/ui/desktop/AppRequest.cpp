#include "Tarn/ui/desktop/AppRequest.h"

#include "TarnCore/base/Error.h"
#include "TarnCore/base/Text.h"
#include "TarnCore/files/Paths.h"

namespace tarn {
namespace {

std::optional<std::string_view> valueOf(std::string_view word, std::string_view option) {
    if (!word.starts_with(option)) return std::nullopt;
    return word.substr(option.size());
}

}  // namespace

bool AppRequest::isPlain() const {
    return paths.empty() && folders.empty() && items.empty() && properties.empty() && !workspace &&
           !wantsWindow && !wantsQuickSearch && !isService;
}

AppRequest AppRequest::parse(const std::vector<std::string>& words, const URL& here) {
    AppRequest request;
    bool selects = false;
    bool isEnded = false;
    for (const std::string& word : words) {
        const auto isOption = [&](std::string_view name) { return !isEnded && word == name; };
        if (isOption("--")) {
            isEnded = true;
        } else if (isOption("--new-window")) {
            request.wantsWindow = true;
        } else if (isOption("--quick-search")) {
            request.wantsQuickSearch = true;
        } else if (isOption("--service")) {
            request.isService = true;
        } else if (isOption("--select")) {
            selects = true;
        } else if (const auto id = valueOf(word, "--workspace="); id && !isEnded) {
            request.workspace = UUID::parse(*id);
            if (!request.workspace)
                throw Error(Text::quoted(*id) + " is not the id of a workspace.");
        } else if (word.starts_with("--") && !isEnded) {
            throw Error("There is no option " + Text::quoted(word) + ".");
        } else {
            auto& places = selects ? request.items : request.paths;
            const auto uri = word.starts_with('/') ? std::nullopt : place(word);
            places.push_back(uri ? *uri : URL::fromPath(word, here));
        }
    }
    return request;
}

std::optional<URL> AppRequest::place(std::string_view uri) {
    if (uri.starts_with('/')) return URL::fromPath(uri);
    if (uri == "trash:" || uri == "trash:/" || uri == "trash:///") return Paths::trash();
    return URL::parse(uri);
}

}  // namespace tarn
