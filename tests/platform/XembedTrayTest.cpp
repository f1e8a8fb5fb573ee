#include "platform/linux/LinuxTrayPresence.h"
#include "platform/qt/QtTrayIcon.h"
#include "support/OwnedProcess.h"
#include "support/RunUntil.h"

#include <QCoreApplication>
#include <QPixmap>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::runUntil;

QIcon picture() {
  QPixmap pixmap(22, 22);
  pixmap.fill(Qt::cyan);
  return {pixmap};
}

TEST(XembedTrayTest, TheIconAppearsWithTheTrayHasAPlaceAndTakesAClick) {
  LinuxTrayPresence presence(QDBusConnection::sessionBus());
  QtTrayIcon icon(presence);
  int activations = 0;
  icon.onActivated([&] { ++activations; });
  icon.setIcon(picture());
  icon.setToolTip(QStringLiteral("MorvoBar"));
  icon.show();
  EXPECT_EQ(icon.geometry(), std::nullopt);
  QCoreApplication::processEvents();
  EXPECT_EQ(icon.geometry(), std::nullopt);

  test::OwnedProcess manager;
  ASSERT_TRUE(manager.start(QStringLiteral("openbox"), {}));
  test::OwnedProcess tray;
  ASSERT_TRUE(
      tray.start(QStringLiteral("trayer"), {QStringLiteral("--edge"), QStringLiteral("top")}));
  ASSERT_TRUE(runUntil([&] { return icon.geometry().has_value(); }));
  icon.setIcon(picture());

  // The tray may still be laying its icons out: follow the icon until a click meets it.
  test::OwnedProcess pointer;
  EXPECT_TRUE(runUntil([&] {
    if (pointer.process().state() == QProcess::NotRunning) {
      const QPoint centre = icon.geometry().value_or(QRect()).center();
      static_cast<void>(pointer.start(QStringLiteral("xdotool"),
                                      {QStringLiteral("mousemove"), QString::number(centre.x()),
                                       QString::number(centre.y()), QStringLiteral("click"),
                                       QStringLiteral("1")}));
    }
    return activations > 0;
  }));
}

} // namespace
} // namespace morvo
