#include "Tarn/model/Counts.h"

#include <limits>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>

#include "TarnCore/files/Format.h"

namespace tarn::Counts {
namespace {

/// Whose texts they are.
struct Words {
    Q_DECLARE_TR_FUNCTIONS(tarn::Counts)
};

/// What decides the plural form. Of a number that Qt cannot hold the last digits do, as in every
/// language whose forms depend on more than one and many.
int plural(std::int64_t n) {
    constexpr std::int64_t digits = 1'000'000;
    return static_cast<int>(n <= std::numeric_limits<int>::max() ? n : digits + n % digits);
}

/// The English texts are there without a translation, so one is apart from all others.
QString counted(std::int64_t n, const QString& one, const QString& several) {
    return n == 1 ? one : QString(several).arg(QLocale().toString(qlonglong{n}));
}

}  // namespace

QString bytes(std::int64_t n) {
    return n == 0 ? Words::tr("Zero KB") : QString::fromStdString(Format::bytes(n));
}

QString items(std::int64_t n) {
    return counted(n, Words::tr("1 item"), Words::tr("%1 items", nullptr, plural(n)));
}

QString itemsInTitle(std::int64_t n) {
    return counted(n, Words::tr("1 Item"), Words::tr("%1 Items", nullptr, plural(n)));
}

QString files(std::int64_t n) {
    return counted(n, Words::tr("1 file"), Words::tr("%1 files", nullptr, plural(n)));
}

QString results(std::int64_t n) {
    return counted(n, Words::tr("1 result"), Words::tr("%1 results", nullptr, plural(n)));
}

QString tags(std::int64_t n) {
    return counted(n, Words::tr("1 tag"), Words::tr("%1 tags", nullptr, plural(n)));
}

QString sources(std::int64_t n) {
    return counted(n, Words::tr("1 source"), Words::tr("%1 sources", nullptr, plural(n)));
}

QString pages(std::int64_t n) {
    return counted(n, Words::tr("1 page"), Words::tr("%1 pages", nullptr, plural(n)));
}

QString tabs(std::int64_t n) {
    return counted(n, Words::tr("1 tab"), Words::tr("%1 tabs", nullptr, plural(n)));
}

QString problems(std::int64_t n) {
    return counted(n, Words::tr("1 problem"), Words::tr("%1 problems", nullptr, plural(n)));
}

QString rows(std::int64_t n) {
    return counted(n, Words::tr("1 row"), Words::tr("%1 rows", nullptr, plural(n)));
}

QString sheets(std::int64_t n) {
    return counted(n, Words::tr("1 sheet"), Words::tr("%1 sheets", nullptr, plural(n)));
}

QString languages(std::int64_t n) {
    return counted(n, Words::tr("1 language"), Words::tr("%1 languages", nullptr, plural(n)));
}

}  // namespace tarn::Counts
