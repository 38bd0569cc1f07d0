#include "Tarn/model/OCRLanguages.h"

#include <algorithm>

#include <QtCore/QLocale>

#include "TarnCore/base/Collation.h"
#include "TarnCore/platform/RecognitionLanguages.h"

namespace tarn::OCRLanguages {

std::vector<Language> in(const std::string& folder) {
    std::vector<Language> languages;
    for (const std::string& data : RecognitionLanguages::dataIn(folder)) {
        const std::string tag = RecognitionLanguages::tag(data);
        if (!tag.empty()) languages.push_back({tag, title(tag)});
    }
    std::ranges::sort(languages, [](const Language& a, const Language& b) {
        return Collation::compare(a.title.toStdString(), b.title.toStdString()) < 0;
    });
    return languages;
}

std::vector<Language> available() { return in(RecognitionLanguages::dataFolder()); }

bool isSame(std::string_view storedTag, std::string_view tag) {
    if (storedTag == tag) return true;
    const std::string data = RecognitionLanguages::dataName(tag);
    return !data.empty() && RecognitionLanguages::dataName(storedTag) == data;
}

QString title(const std::string& tag) {
    const QLocale locale(QString::fromStdString(tag));
    // Old languages, of which nobody's window is.
    if (locale.language() == QLocale::C) return QString::fromStdString(tag);
    const QString language = QLocale::languageToString(locale.language());
    if (QLatin1String(tag.c_str()).contains(u'-') && tag.size() == sizeof "xx-Yyyy" - 1)
        return language + QStringLiteral(" (") + QLocale::scriptToString(locale.script()) + u')';
    return language;
}

}  // namespace tarn::OCRLanguages
