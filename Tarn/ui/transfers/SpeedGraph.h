#pragma once

#include <array>

#include <QtWidgets/QWidget>

namespace tarn {

/// How fast a transfer has been, from its start on the left to its end on the right, so that it
/// grows with the transfer's bar. It is a ground for what else is shown: it takes no pointer and
/// says nothing of its own.
class SpeedGraph final : public QWidget {
    Q_OBJECT
public:
    /// Parts of the way that have a speed of their own.
    static constexpr int steps = 120;

    explicit SpeedGraph(QWidget* parent = nullptr);

    /// `fraction` is how far it has come, 0 to 1, and `bytesPerSecond` how fast it is there. A
    /// speed of 0 is not known yet, and left out.
    void add(double fraction, double bytesPerSecond);
    /// Bytes a second; 0 before the first.
    double fastest() const { return fastest_; }
    /// What is shown at a part of the way; 0 where it has not come to.
    double speedAt(int step) const { return speeds_[static_cast<std::size_t>(step)]; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::array<double, steps> speeds_{};
    int reached_ = -1;  ///< The last step that has a speed.
    double fastest_ = 0;
};

}  // namespace tarn
