#include "Tarn/model/FileMime.h"

#include <string_view>

namespace tarn::FileMime {
namespace {

constexpr auto uriList = "text/uri-list";
constexpr auto copiedFiles = "x-special/gnome-copied-files";
constexpr auto cutSelection = "application/x-kde-cutselection";

std::vector<std::string_view> lines(std::string_view text) {
    std::vector<std::string_view> found;
    while (!text.empty()) {
        const auto end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == text.npos ? text.size() : end + 1);
        // Some programs end what they put there with a NUL.
        while (!line.empty() && (line.back() == '\r' || line.back() == '\0')) line.remove_suffix(1);
        if (!line.empty()) found.push_back(line);
    }
    return found;
}

std::vector<URL> localURLs(const std::vector<std::string_view>& lines) {
    std::vector<URL> urls;
    for (const std::string_view line : lines) {
        if (line.front() == '#') continue;
        if (auto url = URL::parse(line)) urls.push_back(std::move(*url));
    }
    return urls;
}

std::string bytes(const QMimeData& data, const char* format) {
    const QString name = QString::fromLatin1(format);
    // Asking another program for what it does not have may take a while.
    return data.hasFormat(name) ? data.data(name).toStdString() : std::string();
}

std::optional<Files> readCopiedFiles(const QMimeData& data) {
    const std::string text = bytes(data, copiedFiles);
    std::vector<std::string_view> all = lines(text);
    if (all.empty() || (all.front() != "copy" && all.front() != "cut")) return std::nullopt;
    const bool isCut = all.front() == "cut";
    all.erase(all.begin());
    Files files{localURLs(all), isCut};
    if (files.urls.empty()) return std::nullopt;
    return files;
}

std::optional<Files> readPlainText(const QMimeData& data) {
    if (!data.hasText()) return std::nullopt;
    const std::string text = data.text().toStdString();
    Files files;
    for (const std::string_view line : lines(text)) {
        if (line.front() == '/') {
            files.urls.push_back(URL::fromPath(line));
        } else if (auto url = URL::parse(line)) {
            files.urls.push_back(std::move(*url));
        } else {
            return std::nullopt;
        }
    }
    if (files.urls.empty()) return std::nullopt;
    return files;
}

std::string listOf(const std::vector<URL>& urls) {
    std::string text;
    for (const URL& url : urls) {
        url.appendTo(text);
        text += "\r\n";
    }
    return text;
}

}  // namespace

std::unique_ptr<QMimeData> makeDrag(const std::vector<URL>& urls) {
    auto data = std::make_unique<QMimeData>();
    std::string paths;
    for (const URL& url : urls) {
        if (!paths.empty()) paths += '\n';
        paths += url.path();
    }
    data->setData(QString::fromLatin1(uriList), QByteArray::fromStdString(listOf(urls)));
    data->setText(QString::fromStdString(paths));
    return data;
}

std::unique_ptr<QMimeData> make(const Files& files) {
    auto data = makeDrag(files.urls);
    std::string copied = files.isCut ? "cut" : "copy";
    for (const URL& url : files.urls) {
        copied += '\n';
        url.appendTo(copied);
    }
    data->setData(QString::fromLatin1(copiedFiles), QByteArray::fromStdString(copied));
    data->setData(QString::fromLatin1(cutSelection), files.isCut ? "1" : "0");
    return data;
}

std::optional<Files> readDrag(const QMimeData& data) {
    if (auto files = readCopiedFiles(data)) return files;
    const std::string text = bytes(data, uriList);
    Files files{localURLs(lines(text)), false};
    if (files.urls.empty()) return std::nullopt;
    files.isCut = bytes(data, cutSelection).starts_with('1');
    return files;
}

std::optional<Files> read(const QMimeData& data) {
    if (auto files = readDrag(data)) return files;
    return readPlainText(data);
}

}  // namespace tarn::FileMime
