#include "app/PanelPlacement.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

const QRect workArea(0, 30, 1280, 690);
const QSize panel(340, 400);

TEST(PanelPlacementTest, StandsBeneathAnIconAtTheTop) {
  const QPoint origin = PanelPlacement::origin(panel, workArea, QRect(600, 4, 22, 22), {});
  EXPECT_EQ(origin.x(), 611 - 170 - 1);
  EXPECT_GE(origin.y(), 38);
}

TEST(PanelPlacementTest, StandsAboveAnIconAtTheBottom) {
  const QPoint origin =
      PanelPlacement::origin(panel, QRect(0, 0, 1280, 690), QRect(600, 694, 22, 22), {});
  EXPECT_EQ(origin.y() + panel.height(), 690 - 8);
}

TEST(PanelPlacementTest, StaysWholeBesideTheEdge) {
  const QPoint origin = PanelPlacement::origin(panel, workArea, QRect(1270, 4, 22, 22), {});
  EXPECT_EQ(origin.x() + panel.width(), 1280 - 8);
}

TEST(PanelPlacementTest, WithoutAKnownIconThePointerDecides) {
  const QPoint origin = PanelPlacement::origin(panel, workArea, std::nullopt, {400, 50});
  EXPECT_EQ(origin, QPoint(230, 59));
}

TEST(PanelPlacementTest, WithoutIconAndPointerTheUpperRightCornerServes) {
  const QPoint origin = PanelPlacement::origin(panel, workArea, std::nullopt, {-500, -500});
  EXPECT_EQ(origin, QPoint(1280 - 340 - 8, 38));
}

TEST(PanelPlacementTest, OnATinyScreenTheUpperLeftCornerIsVisible) {
  const QPoint origin = PanelPlacement::origin(panel, QRect(0, 0, 200, 200), std::nullopt, {5, 5});
  EXPECT_EQ(origin, QPoint(8, 8));
}

} // namespace
} // namespace morvo
