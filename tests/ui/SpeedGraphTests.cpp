#include <QtGui/QImage>
#include <gtest/gtest.h>

#include "Tarn/ui/transfers/SpeedGraph.h"

namespace tarn {
namespace {

TEST(SpeedGraphTest, hasASpeedForEveryPartOfTheWay) {
    SpeedGraph graph;
    graph.add(0, 0);
    EXPECT_EQ(graph.fastest(), 0);
    graph.add(0, 100);
    // Ten steps at once lie between.
    graph.add(10.0 / SpeedGraph::steps, 200);
    EXPECT_EQ(graph.speedAt(0), 100);
    EXPECT_DOUBLE_EQ(graph.speedAt(5), 150);
    EXPECT_EQ(graph.speedAt(10), 200);
    EXPECT_EQ(graph.speedAt(11), 0);
    graph.add(1, 50);
    EXPECT_EQ(graph.speedAt(SpeedGraph::steps - 1), 50);
    EXPECT_EQ(graph.fastest(), 200);
}

TEST(SpeedGraphTest, forgetsWhatLiesAheadOfATransferThatFoundMoreToDo) {
    SpeedGraph graph;
    graph.add(0.5, 100);
    graph.add(0.9, 900);
    graph.add(0.5, 300);
    EXPECT_EQ(graph.fastest(), 300);
}

TEST(SpeedGraphTest, growsWithTheTransfer) {
    const auto drawn = [](double fraction, Qt::LayoutDirection direction) {
        SpeedGraph graph;
        graph.resize(120, 40);
        graph.setLayoutDirection(direction);
        graph.add(0, 100);
        graph.add(fraction, 100);
        QImage image(graph.size(), QImage::Format_RGB32);
        image.fill(Qt::white);
        graph.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        std::pair<bool, bool> ends = {image.pixel(10, 30) != 0xffffffff,
                                      image.pixel(110, 30) != 0xffffffff};
        return ends;
    };
    EXPECT_EQ(drawn(0.5, Qt::LeftToRight), std::pair(true, false));
    EXPECT_EQ(drawn(1, Qt::LeftToRight), std::pair(true, true));
    EXPECT_EQ(drawn(0.5, Qt::RightToLeft), std::pair(false, true));
}

}  // namespace
}  // namespace tarn
