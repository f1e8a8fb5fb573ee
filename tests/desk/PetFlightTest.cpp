#include "pet/PetFlight.h"

#include "base/RandomSource.h"

#include <QPolygon>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace morvo {
namespace {

using PetFlight::Step;

// A panel of 300 by 400 on this area may go from (100, 50) to (1100, 650).
constexpr QRect area(100, 50, 1300, 1000);
constexpr QSize panel(300, 400);

struct StepRow {
  const char *name;
  QPoint at;
  QPointF velocity;
  Step expected;
};

class PhysicsStepTest : public testing::TestWithParam<StepRow> {};

TEST_P(PhysicsStepTest, MovesAndBounces) {
  const StepRow &row = GetParam();
  const Step step = PetFlight::physicsStep({row.at, panel}, row.velocity, area);
  EXPECT_EQ(step.origin, row.expected.origin);
  EXPECT_DOUBLE_EQ(step.velocity.x(), row.expected.velocity.x());
  EXPECT_DOUBLE_EQ(step.velocity.y(), row.expected.velocity.y());
  EXPECT_EQ(step.isAtRest, row.expected.isAtRest);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, PhysicsStepTest,
    testing::Values(
        StepRow{"fallsByFortyEachStep", {500, 300}, {0, 0}, {{500, 301}, {0, 40}}},
        StepRow{"fliesOnInFreeAir", {500, 300}, {600, -640}, {{510, 290}, {600, -600}}},
        StepRow{"bouncesOffTheLeftEdge", {105, 300}, {-600, -40}, {{100, 300}, {360, 0}}},
        StepRow{"bouncesOffTheRightEdge", {1095, 300}, {600, -40}, {{1100, 300}, {-360, 0}}},
        StepRow{"bouncesOffTheTopOfTheWorkArea", {500, 55}, {0, -640}, {{500, 50}, {0, 360}}},
        StepRow{"losesSpeedBothWaysOnTheFloor", {500, 645}, {100, 560}, {{502, 650}, {70, -300}}},
        StepRow{"aSlowBounceIsNone", {500, 650}, {100, 90}, {{502, 650}, {70, 0}}},
        StepRow{"aBounceOfSeventyStillCounts", {500, 650}, {0, 100}, {{500, 650}, {0, -70}}},
        StepRow{"touchingTheFloorExactlyIsNoContact", {500, 640}, {0, 560}, {{500, 650}, {0, 600}}},
        StepRow{"slidesOutOnTheFloor", {500, 650}, {11, 0}, {{500, 650}, {7.7, 0}, true}},
        StepRow{"stillSlidesAtEight", {500, 650}, {12, 0}, {{500, 650}, {8.4, 0}}},
        StepRow{"cornersTakeBothBounces", {100, 650}, {-100, 90}, {{100, 650}, {42, 0}}}),
    [](const auto &row) { return row.param.name; });

TEST(PetFlightTest, ATwoHundredPointThrowIsNone) {
  EXPECT_FALSE(PetFlight::isThrow({200, 0}));
  EXPECT_FALSE(PetFlight::isThrow({120, -160}));
  EXPECT_TRUE(PetFlight::isThrow({200.1, 0}));
  EXPECT_TRUE(PetFlight::isThrow({0, -201}));
}

TEST(PetFlightTest, NoThrowIsMadeOfWhatIsNoFiniteNumber) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  constexpr double nan = std::numeric_limits<double>::quiet_NaN();
  for (const QPointF velocity :
       {QPointF(infinity, 0), QPointF(0, -infinity), QPointF(nan, 900), QPointF(900, nan)}) {
    EXPECT_FALSE(PetFlight::isThrow(velocity));
  }
}

struct Landing {
  QRect panel;
  int steps = 0;
  bool isAtRest = false;
};

Landing fly(QRect panel, QPointF velocity, const QRect &workArea) {
  // Ten minutes of flight.
  constexpr int patience = 36000;
  Landing landing{panel};
  while (!landing.isAtRest && landing.steps < patience) {
    const Step step = PetFlight::physicsStep(landing.panel, velocity, workArea);
    landing.panel.moveTo(step.origin);
    velocity = step.velocity;
    landing.isAtRest = step.isAtRest;
    ++landing.steps;
  }
  return landing;
}

TEST(PetFlightTest, EveryThrowComesToRestOnTheFloorOfItsWorkArea) {
  constexpr std::array screens{QRect(0, 0, 1280, 800),      QRect(0, 30, 1280, 770),
                               QRect(1920, 0, 3840, 2160),  QRect(-1080, -400, 1080, 1920),
                               QRect(0, 27, 1366, 741),     QRect(62, 0, 1218, 720),
                               QRect(5000, 9000, 600, 650), QRect(0, 0, 512, 610)};
  constexpr std::array panels{QSize(192, 290), QSize(312, 410), QSize(512, 610)};
  SeededRandomSource random(41);
  for (int round = 0; round < 6000; ++round) {
    const QRect &screen = screens.at(random.below(screens.size()));
    const QSize size = panels.at(random.below(panels.size()));
    // Also from far outside, as after a monitor went away.
    const QRect start(QPoint(static_cast<int>(random.uniform(-3000, 9000)),
                             static_cast<int>(random.uniform(-3000, 9000))),
                      size);
    const double speed = std::pow(10, random.uniform(2.3, 6));
    const double angle = random.uniform(0, 2 * std::numbers::pi);
    const Landing landing = fly(start, {speed * std::cos(angle), speed * std::sin(angle)}, screen);
    ASSERT_TRUE(landing.isAtRest) << speed << ' ' << angle;
    ASSERT_TRUE(screen.contains(landing.panel)) << speed << ' ' << angle;
    ASSERT_GE(landing.panel.y() + size.height(), screen.y() + screen.height() - 1);
  }
}

TEST(PetFlightTest, AThrowAtTheEdgeOfTheNumbersComesToRestToo) {
  constexpr double huge = std::numeric_limits<double>::max() / 4;
  constexpr QRect screen(0, 0, 1280, 800);
  for (const QPointF velocity : {QPointF(huge, -huge), QPointF(-huge, huge), QPointF(1e18, 1e18)}) {
    const Landing landing = fly({600, 100, 312, 410}, velocity, screen);
    EXPECT_TRUE(landing.isAtRest);
    EXPECT_TRUE(screen.contains(landing.panel));
  }
}

TEST(PetFlightTest, WhereThePanelDoesNotFitItRestsAtTheFloorAndTheRightEdge) {
  constexpr QRect screen(40, 20, 250, 300);
  const Landing landing = fly({0, 0, 312, 410}, {-3000, -3000}, screen);
  EXPECT_TRUE(landing.isAtRest);
  EXPECT_EQ(landing.panel.x() + 312, 290);
  EXPECT_EQ(landing.panel.y() + 410, 320);
}

TEST(PetFlightTest, AWorkAreaThatShrinksInFlightTakesThePetIn) {
  QRect pet(900, 300, 312, 410);
  QPointF velocity(1500, -900);
  for (int i = 0; i < 20; ++i) {
    const Step step = PetFlight::physicsStep(pet, velocity, {0, 0, 1920, 1080});
    pet.moveTo(step.origin);
    velocity = step.velocity;
  }
  const Landing landing = fly(pet, velocity, {0, 40, 800, 560});
  EXPECT_TRUE(landing.isAtRest);
  EXPECT_TRUE(QRect(0, 40, 800, 560).contains(landing.panel));
}

} // namespace
} // namespace morvo
