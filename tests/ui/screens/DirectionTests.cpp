#include <algorithm>
#include <cmath>
#include <map>
#include <string>

#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <gtest/gtest.h>

#include "tests/ui/screens/EachScreen.h"
#include "tests/ui/screens/Looks.h"

namespace tarn {
namespace {

/// As those who read from right to left see the program.
class ScopedRightToLeft {
public:
    ScopedRightToLeft() { QApplication::setLayoutDirection(Qt::RightToLeft); }
    ~ScopedRightToLeft() { QApplication::setLayoutDirection(Qt::LeftToRight); }
    ScopedRightToLeft(const ScopedRightToLeft&) = delete;
    ScopedRightToLeft& operator=(const ScopedRightToLeft&) = delete;
};

/// Where everything stands that is seen, by what it is; several of a kind in their order.
std::multimap<std::string, QRect> places(Stage& stage) {
    std::multimap<std::string, QRect> found;
    for (QWidget* widget : Looks::seen(stage.front()))
        if (!Looks::textOf(*widget).isEmpty() || Looks::isControl(*widget))
            found.emplace(Looks::nameOf(*widget),
                          QRect(widget->mapTo(&stage.window(), QPoint()), widget->size()));
    return found;
}

/// Pixels. Qt puts what a splitter holds one or two beside its mirror image.
constexpr int tolerance = 2;

/// What keeps its direction in every language: the time of a film runs to the right.
bool staysAsItIs(const std::string& name) { return name.find("MediaPreview") != name.npos; }

TEST_P(EachScreen, isMirroredForThoseWhoReadFromRightToLeft) {
    const auto plain = [&] {
        Stage stage(GetParam(), {1000, 700});
        return places(stage);
    }();
    const ScopedRightToLeft mirrored;
    Stage stage(GetParam(), {1000, 700});
    const auto found = places(stage);
    EXPECT_EQ(found.size(), plain.size());
    for (auto it = plain.begin(); it != plain.end();) {
        const auto end = plain.upper_bound(it->first);
        // Of several with one name each has its mirror image among the others.
        const auto [from, to] = found.equal_range(it->first);
        for (; it != end; ++it) {
            if (staysAsItIs(it->first)) continue;
            QRect wanted = it->second;
            wanted.moveRight(stage.window().width() - 1 - it->second.left());
            const bool isThere = std::any_of(from, to, [&](const auto& one) {
                const QRect& rect = one.second;
                return std::abs(rect.left() - wanted.left()) <= tolerance &&
                       std::abs(rect.right() - wanted.right()) <= tolerance &&
                       rect.top() == wanted.top();
            });
            EXPECT_TRUE(isThere) << it->first << " at " << it->second.left() << "–"
                                 << it->second.right() << " has no mirror image at "
                                 << wanted.left() << "–" << wanted.right()
                                 << (from != to
                                         ? ", it is at " + std::to_string(from->second.left()) +
                                               "–" + std::to_string(from->second.right())
                                         : "");
        }
    }
}

}  // namespace
}  // namespace tarn
