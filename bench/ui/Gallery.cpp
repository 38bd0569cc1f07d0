#include <functional>
#include <memory>

#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListWidget>
#include <QtWidgets/QMenu>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeWidget>

#include "Tarn/ui/path/PathBar.h"
#include "Tarn/ui/search/BusyLine.h"
#include "Tarn/ui/search/ChipRow.h"
#include "Tarn/ui/search/SearchField.h"
#include "Tarn/ui/sidebar/Sidebar.h"
#include "Tarn/ui/states/SkeletonRows.h"
#include "Tarn/ui/states/StatePage.h"
#include "Tarn/ui/states/StatusPill.h"
#include "Tarn/ui/theme/Fonts.h"
#include "Tarn/ui/theme/Icons.h"
#include "Tarn/ui/theme/Metrics.h"
#include "Tarn/ui/theme/Theme.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/Platform.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

using namespace tarn;
using namespace Qt::StringLiterals;

namespace {

FileItem item(const char* name, FileKind kind) {
    FileItem made;
    made.url = URL::fromPath(std::string("/gallery/") + name);
    made.name = name;
    made.kind = kind;
    made.isDirectory = kind == FileKind::folder;
    return made;
}

const std::vector<FileItem>& items() {
    static const std::vector<FileItem> all = {
        item("Folder", FileKind::folder),        item("beach.jpg", FileKind::image),
        item("film.mkv", FileKind::video),       item("song.flac", FileKind::audio),
        item("letter.odt", FileKind::document),  item("invoice.pdf", FileKind::document),
        item("budget.xlsx", FileKind::document), item("talk.key", FileKind::document),
        item("novel.epub", FileKind::document),  item("src.tar.gz", FileKind::archive),
        item("program", FileKind::app),          item("main.cpp", FileKind::code),
        item("Inter.ttf", FileKind::other),      item("data.bin", FileKind::other),
    };
    return all;
}

/// All kinds of files at all sizes, and folders with symbols.
class IconSheet final : public QWidget {
public:
    IconSheet() { setFixedSize(14 * 110, 480); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), palette().base());
        int x = 16;
        for (const FileItem& one : items()) {
            int y = 16;
            for (const int size : {16, 20, 32, 48, 96}) {
                Icons::forItem(one).paint(&painter, QRect(x, y, size, size));
                y += size + 12;
            }
            painter.drawText(x, y + 12, QString::fromStdString(one.name));
            x += 108;
        }
        x = 16;
        for (const char* symbol : {"house", "menubar.dock.rectangle", "doc.text", "arrow.down",
                                   "photo", "film", "music.note"}) {
            Icons::folder(symbol).paint(&painter, QRect(x, 320, 20, 20));
            Icons::folder(symbol).paint(&painter, QRect(x + 30, 320, 96, 96));
            x += 150;
        }
        int sx = x;
        for (const char* symbol :
             {"folder", "magnifyingglass", "exclamationmark.triangle", "trash"}) {
            Icons::symbol(symbol, Icons::Tint::secondary).paint(&painter, QRect(sx, 330, 64, 64));
            sx += 90;
        }
        painter.end();
    }
};

std::unique_ptr<QWidget> controls() {
    auto page = std::make_unique<QWidget>();
    auto* grid = new QGridLayout(page.get());
    auto* plain = new QPushButton(u"Try Again"_s);
    auto* main = new QPushButton(u"Open Folder"_s);
    main->setDefault(true);
    main->setAutoDefault(true);
    auto* focused = new QPushButton(u"Focused"_s);
    auto* off = new QPushButton(u"Disabled"_s);
    off->setEnabled(false);
    grid->addWidget(plain, 0, 0);
    grid->addWidget(main, 0, 1);
    grid->addWidget(focused, 0, 2);
    grid->addWidget(off, 0, 3);
    int column = 0;
    for (const char* name : {"chevron.left", "chevron.right", "arrow.up", "list.bullet"}) {
        auto* button = new QToolButton;
        button->setIcon(Icons::symbol(name));
        button->setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
        button->setCheckable(true);
        button->setChecked(column == 3);
        button->setEnabled(column != 1);
        grid->addWidget(button, 1, column++);
    }
    auto* edit = new QLineEdit(u"Some text"_s);
    edit->setClearButtonEnabled(true);
    auto* empty = new QLineEdit;
    empty->setPlaceholderText(u"Search"_s);
    auto* box = new QComboBox;
    box->addItems({u"Name"_s, u"Date Modified"_s});
    auto* slider = new QSlider(Qt::Horizontal);
    slider->setValue(40);
    grid->addWidget(edit, 2, 0);
    grid->addWidget(empty, 2, 1);
    grid->addWidget(box, 2, 2);
    grid->addWidget(slider, 2, 3);
    auto* check = new QCheckBox(u"Show hidden files"_s);
    check->setChecked(true);
    auto* radio = new QRadioButton(u"Follow the system"_s);
    radio->setChecked(true);
    auto* bar = new QProgressBar;
    bar->setValue(60);
    bar->setTextVisible(false);
    grid->addWidget(check, 3, 0);
    grid->addWidget(new QCheckBox(u"Folders first"_s), 3, 1);
    grid->addWidget(radio, 3, 2);
    grid->addWidget(bar, 3, 3);
    auto* tree = new QTreeWidget;
    tree->setFrameShape(QFrame::NoFrame);
    tree->setHeaderLabels({u"Name"_s, u"Size"_s, u"Date Modified"_s});
    tree->setRootIsDecorated(false);
    tree->setSortingEnabled(true);
    for (int i = 0; i < 30; ++i)
        tree->addTopLevelItem(new QTreeWidgetItem(
            {QString::fromStdString(items()[static_cast<std::size_t>(i) % items().size()].name),
             u"1.2 MB"_s, u"Today at 14:05"_s}));
    tree->topLevelItem(2)->setSelected(true);
    grid->addWidget(tree, 4, 0, 1, 4);
    page->setFixedSize(720, 480);
    focused->setFocus();
    return page;
}

std::unique_ptr<QWidget> menu() {
    auto made = std::make_unique<QMenu>();
    auto* open = made->addAction(Icons::symbol("arrow.up.right.square"), u"&Open"_s);
    open->setShortcut(QKeySequence(u"Ctrl+O"_s));
    made->addAction(u"Copy Path"_s)->setShortcut(QKeySequence(u"Ctrl+Shift+C"_s));
    made->addSeparator();
    auto* check = made->addAction(u"Show Hidden Files"_s);
    check->setCheckable(true);
    check->setChecked(true);
    made->addMenu(u"Sort By"_s)->addAction(u"Name"_s);
    made->addAction(u"Not Available"_s)->setEnabled(false);
    made->setActiveAction(made->actions().at(1));
    return made;
}

/// The bars above and beside the files, and the pages that stand in for them.
std::unique_ptr<QWidget> window() {
    auto page = std::make_unique<QWidget>();
    auto* columns = new QHBoxLayout(page.get());
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(0);
    static AppModel app;
    static SidebarModel places(app);
    auto* sidebar = new Sidebar;
    sidebar->setModel(&places);
    sidebar->setFixedWidth(Metrics::sidebarDefault);
    sidebar->setCurrent(Location::folder(Paths::home()));
    columns->addWidget(sidebar);
    auto* rows = new QVBoxLayout;
    rows->setContentsMargins(Metrics::space8, Metrics::space8, Metrics::space8, 0);
    rows->setSpacing(Metrics::space8);
    columns->addLayout(rows, 1);
    auto* bar = new QHBoxLayout;
    bar->setSpacing(Metrics::space4);
    for (const char* name : {"chevron.left", "chevron.right", "arrow.up"}) {
        auto* button = new QToolButton;
        button->setIcon(Icons::symbol(name));
        button->setFixedSize(Metrics::controlHeight, Metrics::controlHeight);
        bar->addWidget(button);
    }
    bar->addSpacing(Metrics::space4);
    auto* path = new PathBar;
    path->setLocation(Paths::home().appending("Documents/Projects/Lake survey 2026"));
    bar->addWidget(path, 1);
    bar->addSpacing(Metrics::space4);
    auto* search = new SearchField;
    search->setText(u"pdfs from last week over 5 mb"_s);
    bar->addWidget(search);
    rows->addLayout(bar);
    auto* chips = new ChipRow;
    chips->setChips({{ChipCategory::type, "PDFs"},
                     {ChipCategory::date, "Last week"},
                     {ChipCategory::size, "Over 5 MB"},
                     {ChipCategory::source, "From Slack"},
                     {ChipCategory::place, "In Downloads"},
                     {ChipCategory::camera, "iPhone"},
                     {ChipCategory::text, "Containing “water level”, text in images"}});
    rows->addWidget(chips);
    auto* busy = new BusyLine;
    rows->addWidget(busy);
    auto* long_ = new PathBar;
    long_->setLocation(
        URL::fromPath("/usr/share/doc/a very long name that has to be cut "
                      "somewhere in its middle/examples/of/nested/folders/here"));
    rows->addWidget(long_);
    auto* editing = new PathBar;
    editing->setLocation(Paths::home());
    editing->beginEditing();
    rows->addWidget(editing);
    auto* pages = new QHBoxLayout;
    auto* empty = new StatePage;
    empty->setContent({"folder",
                       u"This Folder Is Empty"_s,
                       u"Files that you put here will show up at once."_s,
                       {}});
    pages->addWidget(empty, 1);
    auto* failed = new StatePage;
    failed->setContent({"lock", u"You Can’t Open This Folder"_s,
                        u"Tarn isn’t allowed to read “lost+found”. Ask its owner to let you in."_s,
                        u"Try Again"_s});
    pages->addWidget(failed, 1);
    rows->addLayout(pages, 1);
    auto* skeleton = new SkeletonRows;
    rows->addWidget(skeleton, 1);
    auto* pill = new StatusPill(skeleton);
    pill->setText(u"1,204 items, 3 selected (12.4 MB)"_s);
    page->setFixedSize(1280, 860);
    return page;
}

void save(QWidget& widget, const QString& path) {
    widget.setAttribute(Qt::WA_DontShowOnScreen);
    widget.show();
    // Folders and volumes are looked up on other threads.
    QEventLoop wait;
    QTimer::singleShot(300, &wait, &QEventLoop::quit);
    wait.exec();
    QCoreApplication::processEvents();
    widget.grab().save(path);
}

}  // namespace

/// tarn-gallery OUT-FOLDER [PAGE]; QT_SCALE_FACTOR=2 draws for a fine screen.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
    Platform::setCurrent(makeLinuxPlatform());
    QApplication app(argc, argv);
    app.setFont(QFont(u"Inter"_s, 10));
    Theme& theme = Theme::install(app);
    const QDir out(argc > 1 ? QString::fromLocal8Bit(argv[1]) : u"."_s);
    const struct {
        const char* name;
        std::function<std::unique_ptr<QWidget>()> make;
    } pages[] = {
        {"icons", [] { return std::make_unique<IconSheet>(); }},
        {"controls", controls},
        {"menu", menu},
        {"window", window},
    };
    for (const auto& page : pages) {
        if (argc > 2 && QLatin1StringView(argv[2]) != QLatin1StringView(page.name)) continue;
        for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
            theme.setMode(mode);
            auto widget = page.make();
            save(*widget, out.filePath(u"%1-%2-%3x.png"_s.arg(QLatin1StringView(page.name))
                                           .arg(theme.isDark() ? u"dark"_s : u"light"_s)
                                           .arg(widget->devicePixelRatio())));
        }
    }
    return 0;
}
