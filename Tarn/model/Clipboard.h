#pragma once

#include <memory>

#include <QtCore/QMimeData>
#include <QtCore/QObject>

namespace tarn {

/// The clipboard of the desktop, or in tests one of the process. Main thread only.
class Clipboard : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    /// What is on it now, until the next change; null for nothing.
    virtual const QMimeData* data() const = 0;
    virtual void set(std::unique_ptr<QMimeData> data) = 0;

signals:
    /// This or another program has put something on it.
    void changed();
};

/// A clipboard that only this process sees.
class ProcessClipboard final : public Clipboard {
    Q_OBJECT
public:
    using Clipboard::Clipboard;

    const QMimeData* data() const override { return data_.get(); }
    void set(std::unique_ptr<QMimeData> data) override {
        data_ = std::move(data);
        emit changed();
    }

private:
    std::unique_ptr<QMimeData> data_;
};

}  // namespace tarn
