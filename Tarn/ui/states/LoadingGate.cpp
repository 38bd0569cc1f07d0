#include "Tarn/ui/states/LoadingGate.h"

#include <algorithm>

namespace tarn {

LoadingGate::LoadingGate(QObject* parent) : QObject(parent) {
    timer_.setSingleShot(true);
    connect(&timer_, &QTimer::timeout, this, &LoadingGate::step);
}

void LoadingGate::setLoading(bool loading) {
    if (loading == loading_) return;
    loading_ = loading;
    if (loading == shown_) {
        timer_.stop();
    } else if (loading) {
        timer_.start(delay);
    } else {
        timer_.start(std::max(0, shortest - static_cast<int>(since_.elapsed())));
    }
}

void LoadingGate::step() { setShown(loading_); }

void LoadingGate::setShown(bool shown) {
    if (shown == shown_) return;
    shown_ = shown;
    since_.start();
    emit shownChanged(shown);
}

}  // namespace tarn
