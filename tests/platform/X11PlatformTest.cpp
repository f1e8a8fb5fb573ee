#include "platform/linux/X11Platform.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

const QString display = QStringLiteral("DISPLAY");
const QString wayland = QStringLiteral("WAYLAND_DISPLAY");
const QString chosen = QStringLiteral("QT_QPA_PLATFORM");

X11Platform::Choice choose(const QHash<QString, QString> &variables) {
  return X11Platform::choose(Environment(variables));
}

TEST(X11PlatformTest, AsksForX11WhereADisplayIsNamed) {
  EXPECT_EQ(choose({{display, QStringLiteral(":0")}}).qtPlatform, QStringLiteral("xcb"));
  const auto both = choose({{display, QStringLiteral(":0")}, {wayland, QStringLiteral("w-0")}});
  EXPECT_EQ(both.qtPlatform, QStringLiteral("xcb"));
  EXPECT_FALSE(both.warning);
}

TEST(X11PlatformTest, TheUsersOwnChoiceStands) {
  EXPECT_EQ(choose({{display, QStringLiteral(":0")}, {chosen, QStringLiteral("offscreen")}}),
            X11Platform::Choice{});
  EXPECT_EQ(choose({{wayland, QStringLiteral("w-0")}, {chosen, QStringLiteral("wayland")}}),
            X11Platform::Choice{});
}

TEST(X11PlatformTest, AnEmptyChoiceIsNone) {
  EXPECT_EQ(choose({{display, QStringLiteral(":0")}, {chosen, QString()}}).qtPlatform,
            QStringLiteral("xcb"));
}

TEST(X11PlatformTest, SaysWhatIsLostWhereThereIsOnlyWayland) {
  const auto choice = choose({{wayland, QStringLiteral("w-0")}, {display, QString()}});
  EXPECT_FALSE(choice.qtPlatform);
  EXPECT_TRUE(choice.warning);
}

TEST(X11PlatformTest, LeavesAMachineWithoutScreenToQt) {
  EXPECT_EQ(choose({}), X11Platform::Choice{});
}

} // namespace
} // namespace morvo
