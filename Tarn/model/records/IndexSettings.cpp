#include "Tarn/model/records/IndexSettings.h"

#include <algorithm>

#include "Tarn/model/records/AppSettings.h"
#include "TarnCore/base/JSON.h"

namespace tarn {
namespace {

constexpr std::int64_t megabyte = 1'000'000;

bool holds(const URL& folder, const URL& url) { return url == folder || url.isInside(folder); }

std::vector<URL> withoutInner(const std::vector<URL>& folders) {
    std::vector<URL> outer;
    for (std::size_t i = 0; i < folders.size(); ++i) {
        bool isInner = false;
        for (std::size_t j = 0; j < folders.size(); ++j)
            isInner |=
                i != j && (folders[i].isInside(folders[j]) || (folders[i] == folders[j] && j < i));
        if (!isInner) outer.push_back(folders[i]);
    }
    return outer;
}

void erase(std::vector<std::string>& stored, const URL& folder) {
    std::erase_if(stored, [&folder](const std::string& one) {
        return IndexSettings::read({one}) == std::vector{folder};
    });
}

}  // namespace

std::string IndexSettings::stored(const URL& folder) {
    const std::string text = JSONText::fromPath(folder);
    const std::string home = JSONText::fromPath(Paths::home());
    if (text == home) return "~";
    if (folder.isInside(Paths::home()) && text.starts_with(home + "/"))
        return "~" + text.substr(home.size());
    return text;
}

std::vector<URL> IndexSettings::read(const std::vector<std::string>& stored) {
    std::vector<URL> folders;
    for (const std::string& text : stored) {
        if (text == "~")
            folders.push_back(Paths::home());
        else if (text.starts_with("~/"))
            folders.push_back(Paths::home().appending(text.substr(2)));
        else if (auto url = JSONText::toPath(text))
            folders.push_back(*std::move(url));
    }
    return folders;
}

IndexSettings IndexSettings::of(const AppSettings& settings) {
    IndexSettings index;
    index.isOn = settings.indexFileContents;
    index.ocr = settings.readTextInImages;
    index.languages = settings.ocrLanguages;
    index.folders = withoutInner(read(settings.indexFolders));
    index.excluded = read(settings.indexExcludedFolders);
    index.mostBytesOnDisk = std::max<std::int64_t>(0, settings.indexBudgetMB) * megabyte;
    return index;
}

void IndexSettings::add(AppSettings& settings, const URL& folder) {
    erase(settings.indexExcludedFolders, folder);
    erase(settings.indexFolders, folder);
    settings.indexFolders.push_back(stored(folder));
}

void IndexSettings::remove(AppSettings& settings, const URL& folder) {
    erase(settings.indexFolders, folder);
    const std::vector<URL> left = read(settings.indexFolders);
    if (std::any_of(left.begin(), left.end(),
                    [&folder](const URL& other) { return holds(other, folder); }))
        exclude(settings, folder);
}

void IndexSettings::exclude(AppSettings& settings, const URL& folder) {
    erase(settings.indexExcludedFolders, folder);
    settings.indexExcludedFolders.push_back(stored(folder));
}

void IndexSettings::include(AppSettings& settings, const URL& folder) {
    erase(settings.indexExcludedFolders, folder);
}

}  // namespace tarn
