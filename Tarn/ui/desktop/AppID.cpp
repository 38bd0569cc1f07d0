#include "Tarn/ui/desktop/AppID.h"

#include <QtCore/QByteArray>
#include <QtCore/QCryptographicHash>
#include <QtCore/QFileInfo>

#include "TarnCore/files/Paths.h"

namespace tarn::AppID {
namespace {

using namespace Qt::StringLiterals;

/// Of the digest of a root, in hexadecimal digits: enough that two never meet.
constexpr int digestLength = 16;

}  // namespace

QString name() { return u"org.tarn.Tarn"_s; }

QString objectPath() { return u"/org/tarn/Tarn"_s; }

QString busName() {
    if (!Paths::isIsolated()) return name();
    // Two spellings of one folder are one root; a root that is not there yet is what it is called.
    QByteArray root = QByteArray::fromStdString(Paths::isolatedRoot().path());
    const QByteArray real = QFileInfo(QFile::decodeName(root)).canonicalFilePath().toUtf8();
    if (!real.isEmpty()) root = real;
    const QByteArray digest = QCryptographicHash::hash(root, QCryptographicHash::Sha256).toHex();
    // A part of a bus name must not begin with a digit.
    return name() + u".Isolated_"_s + QString::fromLatin1(digest.first(digestLength));
}

}  // namespace tarn::AppID
