#include <memory>
#include <set>
#include <string>

#include <QtCore/QCoreApplication>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>
#include <QtWidgets/QAbstractScrollArea>
#include <gtest/gtest.h>

#include "Tarn/ui/language/Language.h"
#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/LongTexts.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

/// The ancestor beyond whose edge the widget reaches, where nothing scrolls to it; null for none.
const QWidget* outgrown(const QWidget& widget) {
    QRect rect(QPoint(), widget.size());
    for (const QWidget* one = &widget; !one->isWindow(); one = one->parentWidget()) {
        const QWidget* parent = one->parentWidget();
        rect.translate(one->pos());
        const auto* area = qobject_cast<const QAbstractScrollArea*>(parent->parentWidget());
        if (area && area->viewport() == parent) {
            const bool scrolls = area->horizontalScrollBarPolicy() != Qt::ScrollBarAlwaysOff;
            if (scrolls || (rect.left() >= 0 && rect.right() < parent->width())) return nullptr;
            return parent;
        }
        if (!parent->rect().contains(rect)) return parent;
    }
    return nullptr;
}

void expectRoom(Stage& stage) {
    for (QWidget* widget : Looks::seen(stage.front())) {
        const QString text = Looks::textOf(*widget);
        if (!text.isEmpty()) {
            EXPECT_TRUE(Looks::fits(*widget))
                << Looks::nameOf(*widget) << " has " << widget->width() << " × " << widget->height()
                << " and needs " << widget->sizeHint().width() << " × "
                << widget->sizeHint().height();
        }
        if (text.isEmpty() && !Looks::isControl(*widget)) continue;
        if (const QWidget* parent = outgrown(*widget))
            ADD_FAILURE() << Looks::nameOf(*widget) << " reaches out of " << Looks::nameOf(*parent);
    }
}

void expectRoomAtAllWidths(const Screen& screen) {
    Stage stage(screen);
    for (const int width : {1280, 700, 360}) {
        SCOPED_TRACE(width);
        stage.window().resize(width, 800);
        QCoreApplication::processEvents();
        stage.settle();
        EXPECT_EQ(stage.window().width(), width);
        expectRoom(stage);
    }
}

/// Notes what the translations have no text for. It is asked last, when installed first.
class Missing final : public QTranslator {
public:
    Missing() { QCoreApplication::installTranslator(this); }
    ~Missing() override { QCoreApplication::removeTranslator(this); }

    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char*, int) const override {
        if (QByteArrayView(context).startsWith("tarn::"))
            texts_.insert(std::string(context) + ": " + source);
        return {};
    }
    const std::set<std::string>& texts() const { return texts_; }

private:
    mutable std::set<std::string> texts_;
};

/// German until the end of a scope.
class ScopedGerman {
public:
    ScopedGerman() { Language::use(QLocale(QStringLiteral("de_DE"))); }
    ~ScopedGerman() { Language::use(QLocale(QStringLiteral("en_US"))); }
    ScopedGerman(const ScopedGerman&) = delete;
    ScopedGerman& operator=(const ScopedGerman&) = delete;
};

TEST_P(EachScreen, cutsNoTextOff) { expectRoomAtAllWidths(GetParam()); }

TEST_P(EachScreen, hasRoomForLongerLanguages) {
    const LongTexts longer;
    expectRoomAtAllWidths(GetParam());
}

TEST_P(EachScreen, speaksGermanInTheRoomItHas) {
    const Missing missing;
    {
        const ScopedGerman german;
        expectRoomAtAllWidths(GetParam());
    }
    for (const std::string& text : missing.texts()) ADD_FAILURE() << text << " has no translation";
}

}  // namespace
}  // namespace tarn
