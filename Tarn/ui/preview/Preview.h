#pragma once

#include <cstdint>
#include <utility>

#include <QtCore/QPointer>
#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include "Tarn/model/MainThread.h"
#include "TarnCore/base/CancelToken.h"
#include "TarnCore/base/TaskPool.h"
#include "TarnCore/files/FileItem.h"

namespace tarn {

/// Where a preview stands: small beside the files, where it shows what a file is, or large, where
/// one reads, looks and listens.
enum class PreviewPlace { inspector, quickLook };

/// Shows what is in one file, of one kind; a class for each.
///
/// Main thread only. Reading and decoding happen elsewhere; answers that come when another file is
/// shown are dropped.
class Preview : public QWidget {
    Q_OBJECT
public:
    explicit Preview(PreviewPlace place, QWidget* parent = nullptr)
        : QWidget(parent), place_(place) {}
    ~Preview() override { token_.cancel(); }

    /// Begins with this file; ready() or failed() follows, once.
    void begin(const FileItem& item) {
        drop();
        item_ = item;
        load();
    }
    /// Lets go of the file, and of what was read of it.
    void end() {
        drop();
        clear();
    }
    const FileItem& item() const { return item_; }

    /// What the preview found out about the file that its listing did not know ("1,200 × 800");
    /// empty for nothing.
    virtual QString fact() const { return {}; }
    /// Height that suits a given width beside the files; 0 for as much as there is.
    virtual int heightFor(int /*width*/) const { return 0; }

signals:
    /// There is something to see.
    void ready();
    /// There will be nothing to see. The sentence says why, and is empty where that is no fault.
    void failed(const QString& sentence);
    void factChanged();

protected:
    /// Starts reading item().
    virtual void load() = 0;
    virtual void clear() = 0;

    /// Runs `work(token)` on the pool and hands what it returns to `show(self, result)` here,
    /// unless another file is shown by then. What `work` returns can be copied.
    template <class Self, class Work, class Show>
    static void inBackground(Self* self, Work work, Show show) {
        TaskPool::shared().run([target = QPointer<Self>(self), generation = self->generation_,
                                token = self->token_, work = std::move(work),
                                show = std::move(show)] {
            if (token.isCancelled()) return;
            auto result = work(token);
            if (token.isCancelled()) return;
            MainThread::post(target, [generation, show, result = std::move(result)](Self& there) {
                if (generation == there.generation_) show(there, result);
            });
        });
    }

    PreviewPlace place() const { return place_; }
    bool isSmall() const { return place_ == PreviewPlace::inspector; }
    /// Set when the file is shown no more.
    const CancelToken& token() const { return token_; }
    /// Counts files; an answer for an older one is dropped.
    std::uint64_t generation() const { return generation_; }

private:
    void drop() {
        token_.cancel();
        token_ = CancelToken();
        ++generation_;
    }

    PreviewPlace place_;
    FileItem item_;
    CancelToken token_;
    std::uint64_t generation_ = 0;
};

}  // namespace tarn
