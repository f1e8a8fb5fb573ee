#include "pet/PanelGeometry.h"

#include <gtest/gtest.h>

#include <array>

namespace morvo {
namespace {

struct SizeRow {
  std::optional<double> scale;
  int side;
  QSize panel;
};

class PanelSizeTest : public testing::TestWithParam<SizeRow> {};

TEST_P(PanelSizeTest, FollowsTheScale) {
  EXPECT_EQ(PanelGeometry::spriteSide(GetParam().scale), GetParam().side);
  EXPECT_EQ(PanelGeometry::panelSize(GetParam().scale), GetParam().panel);
}

INSTANTIATE_TEST_SUITE_P(
    Scales, PanelSizeTest,
    testing::Values(SizeRow{std::nullopt, 280, {312, 410}}, SizeRow{0.8, 160, {192, 290}},
                    SizeRow{1.0, 200, {232, 330}}, SizeRow{1.4, 280, {312, 410}},
                    SizeRow{1.2345, 247, {279, 377}}, SizeRow{2.4, 480, {512, 610}}));

TEST(PanelGeometryTest, StandsAboveTheLowerRightCornerOfTheWorkArea) {
  EXPECT_EQ(PanelGeometry::defaultPlace({312, 410}, {0, 0, 1280, 800}),
            QRect(1280 - 312 - 16, 800 - 70 - 410, 312, 410));
}

TEST(PanelGeometryTest, CountsFromTheEdgesOfAWorkAreaThatDoesNotBeginAtTheOrigin) {
  EXPECT_EQ(PanelGeometry::defaultPlace({312, 410}, {100, 32, 1000, 700}),
            QRect(1100 - 312 - 16, 732 - 70 - 410, 312, 410));
}

TEST(PanelGeometryTest, ResizingKeepsTheRightAndBottomEdges) {
  const QRect before(900, 300, 312, 410);
  for (const QSize size : {QSize(512, 610), QSize(192, 290)}) {
    const QRect after = PanelGeometry::resized(before, size);
    EXPECT_EQ(after.size(), size);
    EXPECT_EQ(after.x() + after.width(), 900 + 312);
    EXPECT_EQ(after.y() + after.height(), 300 + 410);
  }
}

struct ReachRow {
  const char *name;
  QRect panel;
  bool isReachable;
};

class ReachTest : public testing::TestWithParam<ReachRow> {};

// The sprite's square begins 16 points from the sides of the panel and 130 below its top.
TEST_P(ReachTest, TakesThirtyTwoPointsOfTheSpriteOnTheWorkArea) {
  const std::array areas{QRect(0, 30, 1280, 770)};
  EXPECT_EQ(PanelGeometry::isReachable(GetParam().panel, areas), GetParam().isReachable);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ReachTest,
    testing::Values(ReachRow{"inTheMiddle", {500, 200, 312, 410}, true},
                    ReachRow{"atTheRightEdge", {1280 - 48, 100, 312, 410}, true},
                    ReachRow{"beyondTheRightEdge", {1280 - 47, 100, 312, 410}, false},
                    ReachRow{"atTheLeftEdge", {48 - 312, 100, 312, 410}, true},
                    ReachRow{"beyondTheLeftEdge", {47 - 312, 100, 312, 410}, false},
                    ReachRow{"atTheTopEdge", {100, 30 + 32 - 410, 312, 410}, true},
                    ReachRow{"beyondTheTopEdge", {100, 30 + 31 - 410, 312, 410}, false},
                    ReachRow{"atTheBottomEdge", {100, 800 - 130 - 32, 312, 410}, true},
                    ReachRow{"beyondTheBottomEdge", {100, 800 - 130 - 31, 312, 410}, false},
                    ReachRow{"withOnlyTheRoomForItsWords", {100, 800 - 48, 312, 410}, false},
                    ReachRow{"smallBelowAllOfItsWords", {100, 800 - 130, 192, 290}, false}),
    [](const auto &row) { return row.param.name; });

TEST(PanelGeometryTest, IsReachableOnAnyOfTheMonitors) {
  const std::array areas{QRect(0, 0, 1280, 800), QRect(1280, 0, 1920, 1080)};
  EXPECT_TRUE(PanelGeometry::isReachable({2000, 500, 312, 410}, areas));
  EXPECT_FALSE(PanelGeometry::isReachable({4000, 500, 312, 410}, areas));
  EXPECT_FALSE(PanelGeometry::isReachable({100, 100, 312, 410}, {}));
}

struct RecoveryRow {
  const char *name;
  QRect panel;
  QPoint origin;
};

class RecoveredOriginTest : public testing::TestWithParam<RecoveryRow> {};

// On a work area from (0, 30) to (1280, 800).
TEST_P(RecoveredOriginTest, KeepsFortyEightPointsOnTheWorkArea) {
  EXPECT_EQ(PanelGeometry::recoveredOrigin(GetParam().panel, {0, 30, 1280, 770}),
            GetParam().origin);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, RecoveredOriginTest,
    testing::Values(RecoveryRow{"leavesThePetWhereItIsSeen", {500, 200, 312, 410}, {500, 200}},
                    RecoveryRow{"leavesItHalfOutside", {1200, 600, 312, 410}, {1200, 600}},
                    RecoveryRow{"fromTheLeft", {-300, 200, 312, 410}, {-264, 200}},
                    RecoveryRow{"fromTheRight", {1270, 200, 312, 410}, {1232, 200}},
                    RecoveryRow{"fromAbove", {500, -400, 312, 410}, {500, -332}},
                    RecoveryRow{"fromBelow", {500, 790, 312, 410}, {500, 752}},
                    RecoveryRow{"fromACorner", {-9000, 9000, 312, 410}, {-264, 752}},
                    RecoveryRow{"notWithoutNeed", {-264, 752, 312, 410}, {-264, 752}}),
    [](const auto &row) { return row.param.name; });

TEST(PanelGeometryTest, AnAxisTooSmallForTheRecoveryStaysAsItIs) {
  // 48 of a panel of 20 cannot be kept on an area of 60: the bounds cross.
  EXPECT_EQ(PanelGeometry::recoveredOrigin({900, 900, 20, 20}, {0, 0, 60, 60}), QPoint(900, 900));
  EXPECT_EQ(PanelGeometry::recoveredOrigin({900, 900, 20, 200}, {0, 0, 60, 600}), QPoint(900, 552));
}

TEST(PanelGeometryTest, StandsOnTheMonitorThatHoldsMostOfIt) {
  const std::array frames{QRect(0, 0, 1280, 800), QRect(1280, 0, 1920, 1080)};
  EXPECT_EQ(PanelGeometry::screenOf({1100, 100, 312, 410}, frames), 0U);
  EXPECT_EQ(PanelGeometry::screenOf({1180, 100, 312, 410}, frames), 1U);
  EXPECT_EQ(PanelGeometry::screenOf({-5000, 100, 312, 410}, frames), std::nullopt);
  EXPECT_EQ(PanelGeometry::screenOf({0, 0, 312, 410}, {}), std::nullopt);
}

} // namespace
} // namespace morvo
