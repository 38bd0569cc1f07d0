#include "Tarn/ui/rename/RuleEditor.h"

#include <QtGui/QPainter>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolButton>

#include "Tarn/model/CoreTexts.h"
#include "Tarn/ui/rename/NumberField.h"
#include "Tarn/ui/text/ChoiceList.h"
#include "Tarn/ui/text/WrappingCheckBox.h"
#include "Tarn/ui/theme/Colors.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Margins.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Paint.h"

namespace tarn {

RuleEditor::RuleEditor(const RuleDraft& draft, QWidget* parent)
    : QWidget(parent),
      draft_(draft),
      kind_(new ChoiceList),
      up_(makeButton("chevron.up", tr("Move Up"))),
      down_(makeButton("chevron.down", tr("Move Down"))),
      remove_(makeButton("xmark", tr("Remove Rule"))),
      column_(new QVBoxLayout(this)) {
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum);
    for (int i = 0; i < ruleKindCount; ++i)
        kind_->addItem(coreText(ruleTitle(static_cast<std::size_t>(i))));
    kind_->setMaxVisibleItems(ruleKindCount);
    kind_->setCurrentIndex(draft_.kind);
    kind_->setAccessibleName(tr("Kind of rule"));
    column_->setContentsMargins(
        Margins::directed(Metrics::space12, Metrics::space8, Metrics::space8, Metrics::space12));
    column_->setSpacing(Metrics::space8);
    auto* head = new QHBoxLayout;
    head->setSpacing(Metrics::space2);
    head->addWidget(kind_, 1);
    head->addSpacing(Metrics::space4);
    for (QToolButton* button : {up_, down_, remove_}) head->addWidget(button);
    column_->addLayout(head);
    connect(kind_, &QComboBox::currentIndexChanged, this, [this](int kind) {
        draft_.kind = kind;
        showFields();
        emit changed();
    });
    connect(up_, &QToolButton::clicked, this, [this] { emit moved(-1); });
    connect(down_, &QToolButton::clicked, this, [this] { emit moved(1); });
    connect(remove_, &QToolButton::clicked, this, &RuleEditor::removed);
    showFields();
}

QToolButton* RuleEditor::makeButton(std::string_view symbol, const QString& title) {
    auto* button = new QToolButton(this);
    button->setAutoRaise(true);
    button->setIcon(Icons::symbol(symbol, Icons::Tint::secondary));
    button->setIconSize({Metrics::space12, Metrics::space12});
    button->setFixedSize(Metrics::smallestTarget, Metrics::smallestTarget);
    button->setToolTip(title);
    button->setAccessibleName(title);
    return button;
}

void RuleEditor::setPlace(std::size_t index, std::size_t count) {
    up_->setEnabled(index > 0);
    down_->setEnabled(index + 1 < count);
    up_->setVisible(count > 1);
    down_->setVisible(count > 1);
    setAccessibleName(tr("Rule %1 of %2").arg(index + 1).arg(count));
}

QWidget* RuleEditor::firstField() const { return firstField_ ? firstField_ : kind_; }

// --- Fields

void RuleEditor::showFields() {
    delete fields_;
    fields_ = new QWidget(this);
    firstField_ = nullptr;
    grid_ = new QGridLayout(fields_);
    grid_->setContentsMargins(Margins::directed(0, 0, Metrics::space4, 0));
    grid_->setHorizontalSpacing(Metrics::space8);
    grid_->setVerticalSpacing(Metrics::space6);
    grid_->setColumnStretch(1, 1);
    const auto title = [](auto value) { return static_cast<int>(value); };
    switch (draft_.kind) {
        case 0:
            addText(tr("Find"), &RuleDraft::find);
            addText(tr("Replace with"), &RuleDraft::replace);
            addSwitch(tr("Match case"), &RuleDraft::caseSensitive);
            addSwitch(tr("Regular expression"), &RuleDraft::regex);
            break;
        case 1:
            addText(tr("Text"), &RuleDraft::text);
            addPosition();
            break;
        case 2:
            addNumber(tr("Start at"), &RuleDraft::start, 0, 999'999'999);
            addNumber(tr("Step"), &RuleDraft::step, -9999, 9999);
            addNumber(tr("Digits"), &RuleDraft::digits, 1, 12);
            addText(tr("Separator"), &RuleDraft::separator);
            addPosition();
            break;
        case 3:
            addChoice(tr("Date"), {tr("Created"), tr("Modified"), tr("Photo taken")},
                      title(draft_.dateSource),
                      [this](int i) { draft_.dateSource = static_cast<DateSource>(i); });
            addText(tr("Format"), &RuleDraft::dateFormat, QStringLiteral("yyyy-MM-dd"));
            addText(tr("Separator"), &RuleDraft::separator);
            addPosition();
            break;
        case 4:
            addChoice(tr("Style"),
                      {tr("lower case"), tr("UPPER CASE"), tr("Title Case"), tr("Sentence case")},
                      title(draft_.caseStyle),
                      [this](int i) { draft_.caseStyle = static_cast<CaseStyle>(i); });
            break;
        case 5:
            addText(tr("Characters"), &RuleDraft::text, tr("for example -_()"));
            break;
        default:
            addNumber(tr("Characters"), &RuleDraft::count, 1, 255);
            break;
    }
    column_->addWidget(fields_);
    fields_->show();
    updateGeometry();
}

void RuleEditor::addField(const QString& label, QWidget* field) {
    const int row = grid_->rowCount();
    auto* name = new QLabel(label);
    name->setForegroundRole(QPalette::PlaceholderText);
    name->setBuddy(field);
    field->setAccessibleName(label);
    grid_->addWidget(name, row, 0);
    grid_->addWidget(field, row, 1);
    if (!firstField_) firstField_ = field;
}

QLineEdit* RuleEditor::addText(const QString& label, std::string RuleDraft::*field,
                               const QString& placeholder) {
    auto* edit = new QLineEdit(QString::fromStdString(draft_.*field));
    edit->setPlaceholderText(placeholder);
    connect(edit, &QLineEdit::textEdited, this, [this, field](const QString& text) {
        draft_.*field = text.toStdString();
        emit changed();
    });
    addField(label, edit);
    return edit;
}

void RuleEditor::addNumber(const QString& label, std::int64_t RuleDraft::*field, int smallest,
                           int largest) {
    auto* edit = new NumberField(smallest, largest);
    edit->setValue(static_cast<int>(draft_.*field));
    connect(edit, &NumberField::valueChanged, this, [this, field](int value) {
        draft_.*field = value;
        emit changed();
    });
    addField(label, edit);
}

void RuleEditor::addChoice(const QString& label, const QStringList& titles, int current,
                           const std::function<void(int)>& choose) {
    auto* box = new ChoiceList;
    box->addItems(titles);
    box->setCurrentIndex(current);
    connect(box, &QComboBox::currentIndexChanged, this, [this, choose](int index) {
        choose(index);
        emit changed();
    });
    addField(label, box);
}

void RuleEditor::addPosition() {
    addChoice(tr("Place"), {tr("Before the name"), tr("After the name")},
              static_cast<int>(draft_.position),
              [this](int i) { draft_.position = static_cast<TextPosition>(i); });
}

void RuleEditor::addSwitch(const QString& title, bool RuleDraft::*field) {
    auto* box = new WrappingCheckBox(title);
    box->setChecked(draft_.*field);
    connect(box, &QCheckBox::toggled, this, [this, field](bool on) {
        draft_.*field = on;
        emit changed();
    });
    grid_->addWidget(box, grid_->rowCount(), 1);
}

void RuleEditor::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const Colors& colors = Colors::current();
    Paint::fill(painter, rect(), Metrics::radiusRow,
                colors.tinted(colors.raised, Metrics::hoverTint / 2));
    Paint::outline(painter, rect(), Metrics::radiusRow, colors.separator, Metrics::hairline);
}

}  // namespace tarn
