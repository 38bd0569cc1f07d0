#include "Tarn/ui/onboarding/OnboardingSheet.h"

#include <algorithm>

#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStackedWidget>

#include "Tarn/commands/CommandRegistry.h"
#include "Tarn/model/AppModel.h"
#include "Tarn/ui/menus/KeyText.h"
#include "Tarn/ui/onboarding/PageDots.h"
#include "Tarn/ui/sheets/ButtonRow.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 560;

QLabel* makeText(const QString& text, bool isSecondary = false) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setMinimumWidth(1);
    if (isSecondary) label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

/// A label on a raised ground: something that is typed, or a key.
class Cap final : public QLabel {
public:
    Cap(const QString& text, bool isField) : QLabel(text), isField_(isField) {
        setTextFormat(Qt::PlainText);
        setWordWrap(isField);
        setAlignment(isField ? Qt::AlignVCenter | Qt::AlignLeading : Qt::AlignCenter);
        const int side = isField ? Metrics::space12 : Metrics::space8;
        const int height = isField ? Metrics::space8 : Metrics::space2;
        const int icon = isField ? Metrics::iconSmall + Metrics::space8 : 0;
        setContentsMargins(Margins::directed(side + icon, height, side, height));
        setSizePolicy(isField ? QSizePolicy::Expanding : QSizePolicy::Fixed, QSizePolicy::Fixed);
    }

protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const Colors& colors = Colors::current();
        Paint::fill(painter, rect(), Metrics::radiusControl,
                    isField_ ? colors.base : colors.tinted(colors.raised, Metrics::hoverTint));
        Paint::outline(painter, rect(), Metrics::radiusControl, colors.border, Metrics::hairline);
        if (isField_) {
            const QRect icon(Metrics::space12, (height() - Metrics::iconSmall) / 2,
                             Metrics::iconSmall, Metrics::iconSmall);
            Icons::symbol("magnifyingglass", Icons::Tint::secondary)
                .paint(&painter, QStyle::visualRect(layoutDirection(), rect(), icon));
        }
        painter.end();
        QLabel::paintEvent(event);
    }

private:
    bool isField_;
};

/// A command whose key is worth knowing from the first day.
struct KeyHint {
    std::string_view command;
    const char* key;  ///< Shown instead of the command's own; null for that.
    const char* text;
};

constexpr KeyHint keyHints[] = {
    {"search", nullptr, QT_TRANSLATE_NOOP("tarn::OnboardingSheet", "Search")},
    {"palette", nullptr, QT_TRANSLATE_NOOP("tarn::OnboardingSheet", "Do anything by its name")},
    {"quicklook", "Space",
     QT_TRANSLATE_NOOP("tarn::OnboardingSheet", "Look into what is selected")},
    {"editPath", nullptr, QT_TRANSLATE_NOOP("tarn::OnboardingSheet", "Type a path")},
    {"tab.new", nullptr, QT_TRANSLATE_NOOP("tarn::OnboardingSheet", "Open a tab")},
    {"split", nullptr, QT_TRANSLATE_NOOP("tarn::OnboardingSheet", "Show two folders side by side")},
    {"history", nullptr,
     QT_TRANSLATE_NOOP("tarn::OnboardingSheet", "See every change, and undo it")},
};

}  // namespace

OnboardingSheet::OnboardingSheet(AppModel& app, QWidget& window)
    : Sheet(window, sheetWidth),
      app_(app),
      pages_(new QStackedWidget),
      dots_(new PageDots),
      skip_(new QPushButton(tr("Skip"))),
      back_(new QPushButton(tr("Back"))),
      next_(new QPushButton) {
    setObjectName(QStringLiteral("onboardingSheet"));
    skip_->setFlat(true);
    next_->setDefault(true);
    addPage(tr("Say What You Are Looking For"), makeExamples());
    addPage(tr("Find Files by What Is in Them"), makeIndexing());
    addPage(tr("A Few Keys to Begin With"), makeKeys());
    column()->addWidget(pages_, 1);
    column()->addSpacing(Metrics::space12);
    auto* place = new QWidget;
    auto* row = new QHBoxLayout(place);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(dots_, 0, Qt::AlignVCenter);
    row->addStretch(1);
    auto* buttons = new ButtonRow(place);
    for (QPushButton* button : {skip_, back_, next_}) buttons->add(*button);
    column()->addWidget(buttons);
    connect(next_, &QPushButton::clicked, this, [this] {
        if (page() + 1 < pageCount())
            show(page() + 1);
        else
            end();
    });
    connect(back_, &QPushButton::clicked, this, [this] { show(page() - 1); });
    connect(skip_, &QPushButton::clicked, this, &OnboardingSheet::end);
    show(app.settings().onboardingPage);
}

int OnboardingSheet::page() const { return pages_->currentIndex(); }

int OnboardingSheet::pageCount() const { return pages_->count(); }

void OnboardingSheet::addPage(const QString& title, QWidget* content) {
    titles_.push_back(title);
    pages_->addWidget(content);
}

// --- Pages

QWidget* OnboardingSheet::makeExamples() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Metrics::space4);
    column->addWidget(
        makeText(tr("Type it as you would say it. Below the search field you see how "
                    "it was understood, and can take parts of it away.")));
    const struct {
        QString query;
        QString meaning;
    } examples[] = {
        {tr("pdfs from last week over 5 mb"), tr("By kind, date and size")},
        {tr("photos from march in Downloads"), tr("By month and folder")},
        {tr("invoices containing “total due”"), tr("By name, and by the text inside")},
    };
    for (const auto& example : examples) {
        column->addSpacing(Metrics::space8);
        column->addWidget(new Cap(example.query, true));
        QLabel* meaning = makeText(example.meaning, true);
        // Below the words that it explains.
        meaning->setIndent(Metrics::space12 + Metrics::iconSmall + Metrics::space8);
        meaning->setFont(Fonts::small());
        column->addWidget(meaning);
    }
    column->addStretch(1);
    return page;
}

QWidget* OnboardingSheet::makeIndexing() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Metrics::space12);
    column->addWidget(makeText(
        tr("Tarn can read your documents while the computer has nothing else to do, so that "
           "searches find what they say. The index stays on this computer.")));
    auto* contents = new WrappingCheckBox(tr("Find files by the text in them"));
    auto* pictures = new WrappingCheckBox(tr("Read text in pictures and scanned pages"));
    contents->setChecked(app_.settings().indexFileContents);
    pictures->setChecked(app_.settings().readTextInImages);
    pictures->setEnabled(contents->isChecked());
    column->addWidget(contents);
    column->addWidget(pictures);
    column->addWidget(makeText(tr("Which folders are read is in the settings."), true));
    column->addStretch(1);
    const auto store = [this, contents, pictures] {
        AppSettings settings = app_.settings();
        settings.indexFileContents = contents->isChecked();
        settings.readTextInImages = pictures->isChecked();
        app_.setSettings(std::move(settings));
        pictures->setEnabled(contents->isChecked());
    };
    connect(contents, &QCheckBox::toggled, this, store);
    connect(pictures, &QCheckBox::toggled, this, store);
    return page;
}

QWidget* OnboardingSheet::makeKeys() {
    auto* page = new QWidget;
    auto* grid = new QGridLayout(page);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(Metrics::space16);
    grid->setVerticalSpacing(Metrics::space8);
    grid->setColumnStretch(1, 1);
    int row = 0;
    const auto all = CommandRegistry::keys(app_.settings());
    for (const KeyHint& hint : keyHints) {
        const TarnCommand* command = CommandRegistry::command(hint.command);
        const auto keys = all.find(hint.command);
        // Nothing is promised that is not there.
        if (!command || !command->unavailable.empty() || keys == all.end() || keys->second.empty())
            continue;
        const std::string key = hint.key ? hint.key : keys->second.front();
        grid->addWidget(new Cap(KeyText::shown(key), false), row, 0,
                        Qt::AlignTrailing | Qt::AlignVCenter);
        grid->addWidget(makeText(tr(hint.text)), row, 1, Qt::AlignVCenter);
        ++row;
    }
    grid->setRowStretch(row, 1);
    return page;
}

// --- Going through them

void OnboardingSheet::show(int page) {
    page = std::clamp(page, 0, pageCount() - 1);
    pages_->setCurrentIndex(page);
    setTitle(titles_[static_cast<std::size_t>(page)]);
    dots_->setPage(page, pageCount());
    const bool isLast = page + 1 == pageCount();
    // One that goes leaves the keyboard to the one that goes on.
    if (page == 0 && back_->hasFocus()) next_->setFocus();
    back_->setVisible(page > 0);
    skip_->setVisible(!isLast);
    next_->setText(isLast ? tr("Start") : tr("Continue"));
    if (app_.settings().onboardingPage == page) return;
    AppSettings settings = app_.settings();
    settings.onboardingPage = page;
    app_.setSettings(std::move(settings));
}

void OnboardingSheet::end() {
    AppSettings settings = app_.settings();
    settings.hasOnboarded = true;
    settings.onboardingPage = 0;
    app_.setSettings(std::move(settings));
    finish();
}

void OnboardingSheet::escape() { end(); }

void OnboardingSheet::layOut() { pages_->updateGeometry(); }

}  // namespace tarn
