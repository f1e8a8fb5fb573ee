#include "panels/PanelLook.h"

#include "app/StoreFixture.h"
#include "panels/Contrast.h"
#include "panels/SignalCount.h"
#include "platform/SettingKeys.h"
#include "platform/qt/AppearancePalettes.h"

#include <QFontMetricsF>

namespace morvo {
namespace {

class PanelLookTest : public test::StoreFixture {};

TEST_F(PanelLookTest, EveryToneCanBeReadInEveryThemeAndAppearance) {
  start();
  PanelLook look;
  look.setStore(m_store.get());
  for (const Appearance appearance : {Appearance::dark, Appearance::light}) {
    AppearancePalettes::apply(appearance);
    for (const char *theme : {"teal", "blue", "purple", "pink", "amber"}) {
      set(SettingKeys::themeColor, QString::fromLatin1(theme));
      look.refresh();
      EXPECT_GE(Contrast::ratio(look.onTheme(), look.theme()), Contrast::leastForText) << theme;
      using Tone = PanelTint::Tone;
      for (const Tone tone : {Tone::foam, Tone::theme, Tone::body, Tone::krill, Tone::coral,
                              Tone::orange, Tone::red, Tone::yellow}) {
        for (const double opacity : {0.4, 0.45, 0.75, 1.0}) {
          const QColor ink = look.ink({tone, opacity});
          EXPECT_GE(Contrast::ratio(ink, QColor(look.card().rgb())), Contrast::leastForText - 0.1)
              << theme;
        }
      }
    }
  }
}

TEST_F(PanelLookTest, CommandsAreShownInLettersOfOneWidth) {
  const QFontMetricsF metrics{QFont(PanelLook::fixedFamily())};
  EXPECT_EQ(metrics.horizontalAdvance(u'i'), metrics.horizontalAdvance(u'W'));
  EXPECT_EQ(metrics.horizontalAdvance(u'l'), metrics.horizontalAdvance(u' '));
}

TEST_F(PanelLookTest, FollowsTheSettingsWhenTheirChangeIsAnnounced) {
  start();
  PanelLook look;
  look.setStore(m_store.get());
  const test::SignalCount changed(&look, &PanelLook::changed);
  set(SettingKeys::fontScale, 1.3);
  set(SettingKeys::themeColor, QStringLiteral("amber"));
  m_store->announceAppearanceChange();
  EXPECT_EQ(changed.value(), 1);
  EXPECT_DOUBLE_EQ(look.fontScale(), 1.3);
  AppearancePalettes::apply(Appearance::light);
  EXPECT_FALSE(look.isDark());
  EXPECT_EQ(QColor(look.theme().rgb()), QColor::fromRgbF(0.8F, 0.498F, 0.051F).rgb());
  AppearancePalettes::apply(Appearance::dark);
  EXPECT_TRUE(look.isDark());
}

} // namespace
} // namespace morvo
