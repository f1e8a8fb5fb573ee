#include "app/PanelPlacement.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

const QRect workArea(0, 30, 1280, 690);
const QSize panel(340, 400);

TEST(PanelPlacementTest, StandsBeneathAnIconAtTheTop) {
  const QPoint origin = PanelPlacement::origin(panel, workArea, QRect(600, 4, 22, 22));
  EXPECT_EQ(origin.x(), 611 - 170 - 1);
  EXPECT_GE(origin.y(), 38);
}

TEST(PanelPlacementTest, StandsAboveAnIconAtTheBottom) {
  const QPoint origin =
      PanelPlacement::origin(panel, QRect(0, 0, 1280, 690), QRect(600, 694, 22, 22));
  EXPECT_EQ(origin.y() + panel.height(), 690 - 8);
}

TEST(PanelPlacementTest, StaysWholeBesideTheEdge) {
  const QPoint origin = PanelPlacement::origin(panel, workArea, QRect(1270, 4, 22, 22));
  EXPECT_EQ(origin.x() + panel.width(), 1280 - 8);
}

TEST(PanelPlacementTest, TheIconComesBeforeTheClickAndTheClickBeforeThePet) {
  const QRect icon(600, 4, 22, 22);
  const QPoint click(400, 50);
  const QRect pet(900, 500, 200, 200);
  EXPECT_EQ(PanelPlacement::anchor({.icon = icon, .click = click, .pet = pet}), icon);
  EXPECT_EQ(PanelPlacement::anchor({.click = click, .pet = pet}), QRect(click, QSize(1, 1)));
  EXPECT_EQ(PanelPlacement::anchor({.pet = pet}), pet);
  EXPECT_EQ(PanelPlacement::anchor({}), std::nullopt);
}

TEST(PanelPlacementTest, StandsBeneathTheClick) {
  EXPECT_EQ(PanelPlacement::origin(panel, workArea, QRect(400, 50, 1, 1)), QPoint(230, 59));
}

TEST(PanelPlacementTest, StandsAboveAPetAtTheBottomAndWholeOnTheScreen) {
  const QPoint origin = PanelPlacement::origin(panel, workArea, QRect(1050, 480, 220, 220));
  EXPECT_EQ(origin, QPoint(1280 - 340 - 8, 480 - 8 - 400));
}

TEST(PanelPlacementTest, WithoutAnAnchorTheUpperRightCornerServes) {
  const QPoint corner(1280 - 340 - 8, 38);
  EXPECT_EQ(PanelPlacement::origin(panel, workArea, std::nullopt), corner);
  EXPECT_EQ(PanelPlacement::origin(panel, workArea, QRect(-5000, -5000, 1, 1)), corner);
}

TEST(PanelPlacementTest, OnATinyScreenTheUpperLeftCornerIsVisible) {
  const QPoint origin = PanelPlacement::origin(panel, QRect(0, 0, 200, 200), QRect(5, 5, 1, 1));
  EXPECT_EQ(origin, QPoint(8, 8));
}

} // namespace
} // namespace morvo
