// Pictures of what the window shows of changes to files: tarn-change-shots OUT [NAME...]. Works in
// a temporary folder; TARN_ISOLATED_ROOT must be set, so that nobody's history is touched.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtGui/QDropEvent>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

#include "Tarn/model/AppModel.h"
#include "Tarn/model/FileMime.h"
#include "Tarn/model/WindowModel.h"
#include "Tarn/model/WindowOperations.h"
#include "Tarn/ui/pane/PaneView.h"
#include "Tarn/ui/theme/Theme.h"
#include "Tarn/ui/window/BrowserWindow.h"
#include "TarnCore/files/Paths.h"
#include "TarnCore/platform/linux/LinuxPlatform.h"

namespace {

using namespace tarn;

constexpr int patience = 10'000;  // milliseconds

/// The disk of a stick: as slow as one, so that there is something to see.
class SlowCopy final : public FileCopy {
public:
    SlowCopy(std::shared_ptr<FileCopy> real, double bytesPerSecond)
        : real_(std::move(real)), bytesPerSecond_(bytesPerSecond) {}

    std::shared_ptr<Record> makeRecord(Purpose purpose) const override {
        return real_->makeRecord(purpose);
    }
    Outcome copy(const URL& from, const URL& to, const Watch& watch) override {
        Watch slow = watch;
        slow.progress = [this, tell = watch.progress](std::int64_t bytes, std::int64_t items) {
            // In pieces, so that cancelling does not wait.
            constexpr std::int64_t piece = 4'000'000;
            while (bytes > piece) {
                if (!tell(piece, 0)) return false;
                wait(piece);
                bytes -= piece;
            }
            wait(bytes);
            return tell(bytes, items);
        };
        return real_->copy(from, to, slow);
    }
    bool flush(const URL& folder) override { return real_->flush(folder); }
    void removeCopied(const URL& from, const Record& record) override {
        real_->removeCopied(from, record);
    }
    void remove(const URL& url) override { real_->remove(url); }

private:
    void wait(std::int64_t bytes) const {
        std::this_thread::sleep_for(
            std::chrono::duration<double>(static_cast<double>(bytes) / bytesPerSecond_));
    }

    std::shared_ptr<FileCopy> real_;
    double bytesPerSecond_;
};

void write(const QDir& folder, const QString& name, qint64 size) {
    QFile file(folder.filePath(name));
    folder.mkpath(QFileInfo(file).path());
    if (!file.open(QIODevice::WriteOnly) || !file.resize(size)) std::abort();
}

/// A picture of a landscape in one of two lights.
void paint(const QDir& folder, const QString& name, QSize size, const QColor& sky) {
    folder.mkpath(QFileInfo(folder.filePath(name)).path());
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient air(0, 0, 0, size.height());
    air.setColorAt(0, sky);
    air.setColorAt(1, sky.lighter(170));
    painter.fillRect(image.rect(), air);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (int hill = 0; hill < 3; ++hill) {
        painter.setBrush(QColor(60, 110, 80).darker(100 + 25 * hill));
        painter.drawEllipse(QRectF(size.width() * (0.35 * hill - 0.3), size.height() * 0.62,
                                   size.width() * 0.9, size.height() * 0.9));
    }
    painter.end();
    image.save(folder.filePath(name), "JPG", 92);
}

class Scene {
public:
    Scene(AppModel& app, const QString& root, Theme::Mode mode, int width)
        : app_(app), folder_(URL::fromPath(root.toStdString())), root_(root) {
        Theme::shared().setMode(mode);
        window_ = new BrowserWindow(
            std::make_unique<WindowModel>(app, Location::folder(folder_.appending("Holiday"))));
        window_->setAttribute(Qt::WA_DeleteOnClose, false);
        window_->model().active().setViewMode(ViewMode::list);
        window_->resize(width, width > 800 ? 620 : 640);
        window_->show();
        wait([this] { return !window_->model().active().isLoading(); });
    }
    ~Scene() {
        app_.transfers().cancelAll();
        wait([this] { return app_.transfers().activeCount() == 0; });
        app_.transfers().removeEnded();
        delete window_;
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    WindowOperations& operations() { return window_->model().operations(); }
    WindowModel& model() { return window_->model(); }
    AppModel& app() { return app_; }
    QWidget& window() { return *window_; }
    URL at(const char* path) const { return folder_.appending(path); }
    QDir dir() const { return QDir(root_); }
    static void wait(const std::function<bool()>& done) {
        if (!QTest::qWaitFor(done, patience)) std::fprintf(stderr, "waited in vain\n");
    }
    void save(const QString& file) {
        // Thumbnails have no single end to wait for.
        QTest::qWait(700);
        window_->grab().save(file);
        std::printf("%s\n", qPrintable(file));
    }

private:
    AppModel& app_;
    URL folder_;
    QString root_;
    BrowserWindow* window_;
};

void conflict(Scene& scene) {
    paint(scene.dir(), QStringLiteral("Phone/IMG_2041.jpg"), {2400, 1600}, QColor(235, 150, 90));
    paint(scene.dir(), QStringLiteral("Holiday/IMG_2041.jpg"), {1200, 800}, QColor(90, 150, 225));
    QFile old(scene.dir().filePath(QStringLiteral("Holiday/IMG_2041.jpg")));
    if (old.open(QIODevice::ReadWrite))
        old.setFileTime(QDateTime(QDate(2025, 8, 14), QTime(18, 20)), QFile::FileModificationTime);
    old.close();
    scene.operations().copyTo({scene.at("Phone/IMG_2041.jpg")}, scene.at("Holiday"));
    Scene::wait([&] { return scene.app().transfers().asking() != nullptr; });
}

void folders(Scene& scene) {
    write(scene.dir(), QStringLiteral("Phone/Beach/a.jpg"), 2'000'000);
    write(scene.dir(), QStringLiteral("Holiday/Beach/b.jpg"), 1'000'000);
    scene.operations().moveTo({scene.at("Phone/Beach")}, scene.at("Holiday"));
    Scene::wait([&] { return scene.app().transfers().asking() != nullptr; });
}

void transfers(Scene& scene) {
    write(scene.dir(), QStringLiteral("Phone/Summer in the Mountains.mov"), 3'400'000'000);
    write(scene.dir(), QStringLiteral("Phone/backup.tar.gz"), 900'000'000);
    write(scene.dir(), QStringLiteral("Phone/notes.txt"), 900);
    auto& list = scene.app().transfers();
    scene.operations().copyTo({scene.at("Phone/notes.txt"), scene.at("Phone/gone.pdf")},
                              scene.at("Archive"));
    Scene::wait([&] { return list.activeCount() == 0; });
    scene.operations().copyTo({scene.at("Phone/Summer in the Mountains.mov")}, scene.at("Archive"));
    scene.operations().copyTo({scene.at("Phone/backup.tar.gz")}, scene.at("Archive"));
    list.startNow(*list.transfers().back());
    scene.operations().copyTo({scene.at("Holiday/plan.odt"), scene.at("Holiday/budget.ods")},
                              scene.at("Archive"));
    QTest::qWait(900);
    list.transfers()[2]->pause();
    scene.model().setShowsTransfers(true);
    QTest::qWait(5000);
}

void toast(Scene& scene) {
    scene.operations().moveTo({scene.at("Holiday/tickets.pdf"), scene.at("Holiday/plan.odt")},
                              scene.at("Archive"));
    Scene::wait([&] { return scene.model().toast().has_value(); });
}

void complaint(Scene& scene) {
    scene.operations().rename(scene.at("Holiday/plan.odt"), "budget.ods");
    Scene::wait([&] { return scene.model().toast().has_value(); });
}

void history(Scene& scene) {
    const auto done = [&] {
        scene.model().dismissToast(scene.model().toast() ? scene.model().toast()->id : UUID());
        return true;
    };
    const auto after = [&](auto change) {
        change();
        Scene::wait([&] { return scene.model().toast().has_value(); });
        done();
    };
    auto& operations = scene.operations();
    after([&] { operations.rename(scene.at("Holiday/plan.odt"), "Plan for the Mountains.odt"); });
    after([&] {
        operations.copyTo(
            {scene.at("Phone/IMG_1.jpg"), scene.at("Phone/IMG_2.jpg"), scene.at("Phone/IMG_3.jpg")},
            scene.at("Holiday"));
    });
    after([&] { operations.createFolder("Receipts"); });
    after([&] { operations.moveTo({scene.at("Holiday/tickets.pdf")}, scene.at("Archive")); });
    after([&] { operations.trash({scene.at("Holiday/IMG_2.jpg")}); });
    QFile::rename(scene.dir().filePath(QStringLiteral("Holiday/IMG_3.jpg")),
                  scene.dir().filePath(QStringLiteral("Holiday/Sunset.jpg")));
    scene.model().setShowsHistory(true);
    scene.app().history().flush();
    QTest::qWait(300);
}

void drop(Scene& scene) {
    auto* view = scene.model().active().viewMode() == ViewMode::list
                     ? scene.window().findChild<PaneView*>(QStringLiteral("paneList"))
                     : nullptr;
    if (!view) return;
    const auto row = scene.model().active().items().row(scene.at("Holiday/Beach"));
    const QPoint point =
        view->visualRect(scene.model().active().items().index(row.value_or(0), 0)).center();
    static std::unique_ptr<QMimeData> data;
    data = FileMime::makeDrag({scene.at("Holiday/plan.odt"), scene.at("Holiday/tickets.pdf")});
    QDragEnterEvent enter(point, Qt::CopyAction | Qt::MoveAction, data.get(), Qt::LeftButton,
                          Qt::NoModifier);
    QApplication::sendEvent(view->viewport(), &enter);
}

struct Shot {
    const char* name;
    void (*play)(Scene&);
};
constexpr Shot shots[] = {
    {"conflict", conflict}, {"folders", folders},     {"transfers", transfers},
    {"toast", toast},       {"complaint", complaint}, {"history", history},
    {"drop", drop}};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2 || !std::getenv("TARN_ISOLATED_ROOT")) {
        std::fprintf(stderr, "usage: TARN_ISOLATED_ROOT=… tarn-change-shots OUT [NAME...]\n");
        return 2;
    }
    Platform platform = makeLinuxPlatform();
    platform.copying = std::make_shared<SlowCopy>(platform.copying, 120e6);
    Platform::setCurrent(platform);
    QApplication qt(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    Theme::install(qt);
    Theme::shared().setAnimations(false);
    const QString out = QString::fromLocal8Bit(argv[1]);
    for (const Shot& shot : shots) {
        bool wanted = argc == 2;
        for (int i = 2; i < argc; ++i) wanted |= QByteArray(argv[i]) == shot.name;
        if (!wanted) continue;
        for (const auto mode : {Theme::Mode::light, Theme::Mode::dark}) {
            for (const int width : {900, 700}) {
                QTemporaryDir root;
                const QDir dir(root.path());
                for (const char* name : {"Holiday/plan.odt", "Holiday/budget.ods",
                                         "Holiday/tickets.pdf", "Holiday/Beach/a.jpg"})
                    write(dir, QString::fromUtf8(name), 48'000);
                for (const char* name : {"Phone/IMG_1.jpg", "Phone/IMG_2.jpg", "Phone/IMG_3.jpg"})
                    write(dir, QString::fromUtf8(name), 2'400'000);
                dir.mkpath(QStringLiteral("Archive"));
                AppModel app;
                app.history().flush();
                {
                    Scene scene(app, root.path(), mode, width);
                    shot.play(scene);
                    scene.save(QDir(out).filePath(
                        QStringLiteral("%1-%2-%3.png")
                            .arg(QString::fromUtf8(shot.name), mode == Theme::Mode::light
                                                                   ? QStringLiteral("light")
                                                                   : QStringLiteral("dark"))
                            .arg(width)));
                }
                QFile::remove(QString::fromStdString(OperationHistory::defaultFile().path()));
            }
        }
    }
    return 0;
}
