#include "Tarn/ui/language/Language.h"

#include <array>
#include <memory>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QLibraryInfo>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

// The macro works outside of namespaces only.
static void loadTranslations() { Q_INIT_RESOURCE(languages); }

namespace tarn::Language {
namespace {

constexpr QLatin1String folder(":/languages");

/// Those of the toolkit's own texts, as in the menus of text fields, and ours.
std::array<std::unique_ptr<QTranslator>, 2>& shown() {
    static std::array<std::unique_ptr<QTranslator>, 2> translators;
    return translators;
}

void install(std::unique_ptr<QTranslator>& place, const QString& name, const QString& path) {
    auto translator = std::make_unique<QTranslator>();
    if (!translator->load(name, path)) return;
    place = std::move(translator);
    QCoreApplication::installTranslator(place.get());
}

}  // namespace

QStringList all() {
    loadTranslations();
    QStringList languages;
    for (QString name : QDir(QString(folder)).entryList({QStringLiteral("tarn_*.qm")}))
        languages << name.remove(QStringLiteral("tarn_")).remove(QStringLiteral(".qm"));
    return languages;
}

QString use(const QLocale& locale) {
    for (auto& translator : shown()) translator.reset();  // which takes it away
    const QStringList languages = all();
    for (const QString& wanted : locale.uiLanguages()) {
        const QString language = wanted.section(u'-', 0, 0);
        if (language == QStringLiteral("en")) break;
        if (!languages.contains(language)) continue;
        install(shown()[0], QStringLiteral("qtbase_") + language,
                QLibraryInfo::path(QLibraryInfo::TranslationsPath));
        install(shown()[1], QStringLiteral("tarn_") + language, QString(folder));
        return language;
    }
    return QStringLiteral("en");
}

}  // namespace tarn::Language
