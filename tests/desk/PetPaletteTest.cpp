#include "pet/PetPalette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace morvo {
namespace {

const AdaptiveColor theme{QColor(1, 2, 3), QColor(4, 5, 6)};

struct AccentRow {
  const char16_t *mood;
  const AdaptiveColor *color;
};

class AccentTest : public testing::TestWithParam<AccentRow> {};

TEST_P(AccentTest, IsTheColourOfTheMood) {
  EXPECT_EQ(PetPalette::accent(QString::fromUtf16(GetParam().mood), theme), *GetParam().color);
}

INSTANTIATE_TEST_SUITE_P(Moods, AccentTest,
                         testing::Values(AccentRow{u"hungry", &PetPalette::krill()},
                                         AccentRow{u"lonely", &PetPalette::morvoBody()},
                                         AccentRow{u"sleepy", &PetPalette::morvoBody()},
                                         AccentRow{u"dreamy", &PetPalette::morvoBody()},
                                         AccentRow{u"mischievous", &PetPalette::coral()},
                                         AccentRow{u"calm", &theme}, AccentRow{u"happy", &theme},
                                         AccentRow{u"no such mood", &theme},
                                         AccentRow{u"", &theme}));

double luminance(const QColor &color) {
  const auto linear = [](float part) {
    return part <= 0.04045F ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double contrast(const QColor &first, const QColor &second) {
  // The list form gives values: the pair form would refer to temporaries that are gone.
  const auto [dark, light] = std::minmax({luminance(first), luminance(second)});
  return (light + 0.05) / (dark + 0.05);
}

TEST(PetPaletteTest, EveryColourIsReadableAsTextOnTheGroundInBothAppearances) {
  constexpr double readable = 4.0;
  for (const bool dark : {false, true}) {
    const QColor ground = PetPalette::abyss().in(dark);
    EXPECT_GE(contrast(ground, PetPalette::foam().in(dark)), 7.0);
    for (const AdaptiveColor *color :
         {&PetPalette::morvoBody(), &PetPalette::krill(), &PetPalette::coral()}) {
      EXPECT_GE(contrast(ground, color->in(dark)), readable) << dark;
    }
  }
}

} // namespace
} // namespace morvo
