#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QTranslator>

namespace tarn {

/// A language whose every text is 40 % longer than the English one, and marked at both ends, while
/// this lives. Widgets made before it keep their texts.
class LongTexts final : public QTranslator {
public:
    LongTexts() { QCoreApplication::installTranslator(this); }
    ~LongTexts() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char*, const char* source, const char*, int) const override {
        const QString text = QString::fromUtf8(source);
        // Formats and separators are no words.
        if (text.size() < 3) return text;
        QString more;
        const qsizetype length = (text.size() * 2 + 4) / 5;
        while (more.size() < length) more += QStringLiteral(" éa").at(more.size() % 3);
        return u'[' + text + more.left(length) + u']';
    }
};

}  // namespace tarn
