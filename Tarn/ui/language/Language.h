#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class QLocale;

/// The language of the texts. Main thread only.
namespace tarn::Language {

/// From now on texts are in the first of the locale's languages that there is a translation for;
/// English counts as one. Before the first widget. Returns that language ("de"), "en" for none.
QString use(const QLocale& locale);

/// Those that there are translations for, without English.
QStringList all();

}  // namespace tarn::Language
