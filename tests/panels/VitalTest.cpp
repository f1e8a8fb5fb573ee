#include "panels/Vital.h"

#include <gtest/gtest.h>

#include <limits>

namespace morvo {
namespace {

using Tone = PanelTint::Tone;

TEST(VitalTest, StandInTheirOrderEachWithItsSignAndColour) {
  const auto vitals = Vitals::of({.belly = 80, .energy = 70.9, .affinity = 60, .bond = 30});
  EXPECT_EQ(vitals[0], (Vital{QStringLiteral("🍖"), QStringLiteral("饱腹"), 80, {Tone::krill, 1}}));
  EXPECT_EQ(vitals[1], (Vital{QStringLiteral("⚡️"), QStringLiteral("精力"), 70, {Tone::theme, 1}}));
  EXPECT_EQ(vitals[2], (Vital{QStringLiteral("💗"), QStringLiteral("亲密"), 60, {Tone::coral, 1}}));
  EXPECT_EQ(vitals[3], (Vital{QStringLiteral("🔗"), QStringLiteral("羁绊"), 30, {Tone::body, 1}}));
}

TEST(VitalTest, BelowTwentyFiveCallsForCare) {
  const Vital low = Vitals::of({.belly = 24.9})[0];
  EXPECT_EQ(low.value, 24);
  EXPECT_EQ(low.tint, (PanelTint{Tone::coral, 1}));
  EXPECT_EQ(Vitals::of({.belly = 25})[0].tint, (PanelTint{Tone::krill, 1}));
}

TEST(VitalTest, ValuesStayBetweenNoneAndAll) {
  EXPECT_EQ(Vitals::of({.belly = -3})[0].value, 0);
  EXPECT_EQ(Vitals::of({.belly = 250})[0].value, 100);
  EXPECT_EQ(Vitals::of({.belly = std::numeric_limits<double>::quiet_NaN()})[0].value, 0);
}

TEST(VitalTest, TellsTheValueAndWhatItDependsOn) {
  const Vital vital = Vitals::of({.energy = 82})[1];
  EXPECT_EQ(vital.text(), QStringLiteral("82%"));
  EXPECT_EQ(vital.help(), QStringLiteral("精力：82% · 仅宠物互动影响"));
}

} // namespace
} // namespace morvo
