#include "Tarn/model/OCRLanguages.h"

#include <algorithm>
#include <optional>

#include <QtCore/QDir>
#include <QtCore/QLocale>

#include "TarnCore/base/Collation.h"
#include "TarnCore/platform/RecognitionData.h"

namespace tarn::OCRLanguages {
namespace {

/// What Tesseract adds to a language for its script, and BCP 47's name for it.
constexpr struct {
    const char* suffix;
    const char* script;
} scripts[] = {{"sim", "Hans"}, {"tra", "Hant"}, {"cyrl", "Cyrl"}, {"latn", "Latn"}};

/// "deu" and "chi_sim" are languages; "osd" and the scripts' own data are none.
std::optional<Language> named(const QString& data) {
    const QString code = data.section(u'_', 0, 0);
    const QString suffix = data.section(u'_', 1);
    // Tesseract keeps to an older code here.
    const QLocale::Language language =
        code == QLatin1String("chi") ? QLocale::Chinese : QLocale::codeToLanguage(code);
    if (language == QLocale::AnyLanguage || language == QLocale::C) return std::nullopt;
    QString tag = QLocale::languageToCode(language);
    if (!suffix.isEmpty()) {
        const auto* script = std::ranges::find_if(
            scripts, [&](const auto& one) { return suffix == QLatin1String(one.suffix); });
        // Vertical writing and the like: other data for the same language.
        if (script == std::end(scripts)) return std::nullopt;
        tag += u'-' + QLatin1String(script->script);
    }
    return Language{tag.toStdString(), title(tag.toStdString())};
}

}  // namespace

std::vector<Language> in(const std::string& folder) {
    std::vector<Language> languages;
    const QDir dir(QString::fromStdString(folder));
    for (const QString& file : dir.entryList({QStringLiteral("*.traineddata")}, QDir::Files)) {
        auto language = named(file.chopped(static_cast<qsizetype>(sizeof ".traineddata" - 1)));
        if (language && std::ranges::find(languages, *language) == languages.end())
            languages.push_back(*std::move(language));
    }
    std::ranges::sort(languages, [](const Language& a, const Language& b) {
        return Collation::compare(a.title.toStdString(), b.title.toStdString()) < 0;
    });
    return languages;
}

std::vector<Language> available() {
    for (const std::string& folder : recognitionDataFolders())
        if (auto languages = in(folder); !languages.empty()) return languages;
    return {};
}

bool isSame(std::string_view storedTag, std::string_view tag) {
    return storedTag == tag ||
           (storedTag.starts_with(tag) && storedTag.substr(tag.size()).starts_with('-'));
}

QString title(const std::string& tag) {
    const QLocale locale(QString::fromStdString(tag));
    const QString language = QLocale::languageToString(locale.language());
    if (QLatin1String(tag.c_str()).contains(u'-') && tag.size() == sizeof "xx-Yyyy" - 1)
        return language + QStringLiteral(" (") + QLocale::scriptToString(locale.script()) + u')';
    return language;
}

}  // namespace tarn::OCRLanguages
