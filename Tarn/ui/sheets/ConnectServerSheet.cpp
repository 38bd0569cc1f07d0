#include "Tarn/ui/sheets/ConnectServerSheet.h"

#include <algorithm>
#include <utility>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/DisplayText.h"
#include "Tarn/model/DriveService.h"
#include "Tarn/model/ServerAddress.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/ui/search/BusyLine.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"

namespace tarn {
namespace {

constexpr int sheetWidth = 480;
constexpr int mostRowsShown = 4;

QLabel* makeNote() {
    auto* note = new QLabel;
    note->setTextFormat(Qt::PlainText);
    note->setWordWrap(true);
    note->setMinimumWidth(1);
    note->setForegroundRole(QPalette::PlaceholderText);
    return note;
}

void addField(QVBoxLayout& column, const QString& title, QLineEdit* field) {
    auto* label = new QLabel(title);
    label->setBuddy(field);
    field->setAccessibleName(title);
    auto* part = new QVBoxLayout;
    part->setSpacing(Metrics::space4);
    part->addWidget(label);
    part->addWidget(field);
    column.addLayout(part);
}

void setFieldVisible(QLineEdit* field, bool isVisible) {
    field->setVisible(isVisible);
    for (QLabel* label : field->parentWidget()->findChildren<QLabel*>())
        if (label->buddy() == field) label->setVisible(isVisible);
}

}  // namespace

ConnectServerSheet::ConnectServerSheet(QWidget& window, WindowModel& model,
                                       const std::string& address)
    : Sheet(window, sheetWidth),
      model_(model),
      address_(new QLineEdit(displayText(address))),
      note_(makeNote()),
      servers_(new QListWidget),
      question_(new QWidget),
      message_(makeNote()),
      choices_(new QVBoxLayout),
      user_(new QLineEdit),
      password_(new QLineEdit),
      busy_(new BusyLine),
      apply_(new QPushButton(tr("Connect"))) {
    setObjectName(QStringLiteral("connectServerSheet"));
    setTitle(tr("Connect to Server"));
    address_->setPlaceholderText(QStringLiteral("smb://nas/photos"));
    addField(*column(), tr("Address"), address_);
    column()->addWidget(note_);
    makeServers();
    makeQuestion();
    column()->addWidget(busy_);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(Metrics::space8);
    auto* cancel = new QPushButton(tr("Cancel"));
    apply_->setDefault(true);
    buttons->addStretch();
    buttons->addWidget(cancel);
    buttons->addWidget(apply_);
    column()->addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, &Sheet::finish);
    connect(apply_, &QPushButton::clicked, this, &ConnectServerSheet::apply);
    connect(address_, &QLineEdit::textChanged, this, &ConnectServerSheet::check);
    for (QLineEdit* field : {address_, user_, password_})
        connect(field, &QLineEdit::returnPressed, this, &ConnectServerSheet::apply);
    connect(this, &Sheet::finished, this, [this] { connection_.cancel(); });
    connect(&connection_, &ServerConnection::asked, this, &ConnectServerSheet::ask);
    connect(&connection_, &ServerConnection::connected, this, &ConnectServerSheet::arrive);
    connect(&connection_, &ServerConnection::failed, this, &ConnectServerSheet::fail);
    check();
    if (!address.empty()) begin();
}

QWidget* ConnectServerSheet::firstField() const { return address_; }

// --- Parts

void ConnectServerSheet::makeServers() {
    servers_->setAccessibleName(tr("Servers that were connected to before"));
    servers_->setFrameShape(QFrame::NoFrame);
    servers_->setUniformItemSizes(true);
    servers_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    servers_->setTextElideMode(Qt::ElideMiddle);
    servers_->viewport()->setAutoFillBackground(false);
    servers_->installEventFilter(this);
    column()->addWidget(servers_);
    connect(servers_, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { address_->setText(item->text()); });
    connect(servers_, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        address_->setText(item->text());
        apply();
    });
    connect(&model_.app().lists(), &UserLists::serversChanged, this,
            &ConnectServerSheet::showServers);
    showServers();
}

void ConnectServerSheet::showServers() {
    servers_->clear();
    for (const std::string& server : model_.app().lists().servers()) {
        auto* item = new QListWidgetItem(Icons::symbol("server.rack", Icons::Tint::secondary),
                                         displayText(server), servers_);
        item->setSizeHint({0, Metrics::rowDefault});
        item->setToolTip(item->text());
    }
    const int rows = std::min(servers_->count(), mostRowsShown);
    servers_->setFixedHeight(rows * Metrics::rowDefault);
    servers_->setVisible(rows > 0 && !connection_.isRunning());
}

void ConnectServerSheet::makeQuestion() {
    password_->setEchoMode(QLineEdit::Password);
    auto* part = new QVBoxLayout(question_);
    part->setContentsMargins(0, 0, 0, 0);
    part->setSpacing(Metrics::space12);
    choices_->setSpacing(Metrics::space4);
    part->addWidget(message_);
    part->addLayout(choices_);
    addField(*part, tr("User"), user_);
    addField(*part, tr("Password"), password_);
    question_->hide();
    column()->addWidget(question_);
}

bool ConnectServerSheet::eventFilter(QObject* watched, QEvent* event) {
    if (watched == servers_ && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete) {
        forgetServer();
        return true;
    }
    return Sheet::eventFilter(watched, event);
}

void ConnectServerSheet::forgetServer() {
    const int row = servers_->currentRow();
    const auto& servers = model_.app().lists().servers();
    if (row < 0 || row >= static_cast<int>(servers.size())) return;
    model_.app().lists().forgetServer(std::string(servers[static_cast<std::size_t>(row)]));
}

// --- What is typed

void ConnectServerSheet::check() {
    if (connection_.isRunning()) return;
    const std::string typed = address_->text().trimmed().toStdString();
    const auto address = DriveService::serverURL(typed);
    QString note;
    if (typed.empty())
        note = tr("The name of a server, or an address that begins with smb, sftp, dav or davs.");
    else if (!address)
        note =
            tr("Only addresses that begin with smb, sftp, dav, davs, http or https can be "
               "connected to.");
    else if (*address != typed)
        note = displayText(*address);
    note_->setText(note);
    note_->setForegroundRole(QPalette::PlaceholderText);
    note_->setVisible(!note.isEmpty());
    address_->setAccessibleDescription(note);
    apply_->setEnabled(address.has_value());
}

void ConnectServerSheet::apply() {
    if (!apply_->isEnabled()) return;
    if (isAsked_)
        reply();
    else
        begin();
}

void ConnectServerSheet::begin() {
    const auto address = DriveService::serverURL(address_->text().toStdString());
    if (!address) return;
    connection_.start(*address);
    if (!connection_.isRunning()) return;
    setWaiting(true);
    note_->setText(tr("Connecting to “%1”…").arg(displayText(ServerAddress::title(*address))));
    note_->setForegroundRole(QPalette::PlaceholderText);
    note_->show();
}

void ConnectServerSheet::setWaiting(bool isWaiting) {
    busy_->setBusy(isWaiting);
    address_->setEnabled(!connection_.isRunning());
    servers_->setVisible(!connection_.isRunning() && servers_->count() > 0);
    question_->setEnabled(!isWaiting);
    apply_->setEnabled(!isWaiting);
    if (isWaiting) setFocus(Qt::OtherFocusReason);
}

// --- What the server says

void ConnectServerSheet::ask(const ServerQuestion& question) {
    isAsked_ = true;
    setWaiting(false);
    note_->setVisible(question.isRepeated);
    note_->setText(tr("That did not do. Look at the name and the password."));
    message_->setText(displayText(question.message).replace(QChar(0x240A), u'\n'));
    message_->setVisible(!question.message.empty());
    for (QRadioButton* button : std::exchange(choiceButtons_, {})) delete button;
    for (const std::string& choice : question.choices) {
        auto* button = new QRadioButton(displayText(choice));
        choices_->addWidget(button);
        choiceButtons_.push_back(button);
        connect(button, &QRadioButton::toggled, this, [this] { apply_->setEnabled(true); });
    }
    const bool asksWho = question.choices.empty();
    setFieldVisible(user_, asksWho && question.user.has_value());
    setFieldVisible(password_, asksWho);
    if (question.user && user_->text().isEmpty()) user_->setText(displayText(*question.user));
    password_->clear();
    question_->show();
    // Nothing is chosen for the person: it may be whether to trust a stranger.
    apply_->setEnabled(asksWho);
    QWidget* first = password_;
    if (!asksWho)
        first = choiceButtons_.front();
    else if (question.user && user_->text().isEmpty())
        first = user_;
    first->setFocus(Qt::OtherFocusReason);
}

void ConnectServerSheet::reply() {
    ServerAnswer answer;
    answer.user = user_->text().toStdString();
    answer.password = password_->text().toStdString();
    const auto chosen = std::find_if(choiceButtons_.begin(), choiceButtons_.end(),
                                     [](QRadioButton* button) { return button->isChecked(); });
    if (chosen != choiceButtons_.end())
        answer.choice = static_cast<std::size_t>(chosen - choiceButtons_.begin());
    isAsked_ = false;
    password_->clear();
    setWaiting(true);
    connection_.answer(std::move(answer));
}

void ConnectServerSheet::arrive(const URL& folder) {
    WindowModel& model = model_;
    model.app().lists().rememberServer(address_->text().toStdString());
    finish();
    model.app().refreshVolumes();
    model.active().navigate(Location::folder(folder));
}

void ConnectServerSheet::fail(const QString& sentence) {
    isAsked_ = false;
    question_->hide();
    setWaiting(false);
    note_->setText(sentence);
    note_->setForegroundRole(QPalette::WindowText);
    note_->show();
    setAccessibleDescription(sentence);
    address_->setFocus(Qt::OtherFocusReason);
    address_->selectAll();
}

}  // namespace tarn
