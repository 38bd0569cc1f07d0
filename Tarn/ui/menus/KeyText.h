#pragma once

#include <string>
#include <string_view>

#include <QtCore/QString>
#include <QtGui/QKeySequence>

/// Keys as Qt has them, from the form in which the command registry writes them.
namespace tarn::KeyText {

inline QKeySequence sequence(std::string_view portable) {
    return QKeySequence(QString::fromUtf8(portable.data(), static_cast<qsizetype>(portable.size())),
                        QKeySequence::PortableText);
}

/// As a person reads them: “Ctrl+Shift+H”.
inline QString shown(std::string_view portable) {
    return sequence(portable).toString(QKeySequence::NativeText);
}

}  // namespace tarn::KeyText
