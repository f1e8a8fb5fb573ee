#include "RealDesktop.h"

#include <QApplication>

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>
#include <memory>

namespace {

constexpr QSize screen(1280, 800);

bool onlyLists(int argc, char **argv) {
  return std::any_of(argv, argv + argc, [](const char *argument) {
    return QByteArrayView(argument) == "--gtest_list_tests";
  });
}

} // namespace

int main(int argc, char **argv) {
  const bool lists = onlyLists(argc, argv);
  testing::InitGoogleMock(&argc, argv);
  if (lists) {
    return RUN_ALL_TESTS();
  }
  // The server must stand before the application object connects to it.
  morvo::test::PrivateDesktop desktop(screen);
  if (!desktop.isRunning()) {
    static_cast<void>(std::fputs("no X server or window manager could be started\n", stderr));
    return 1;
  }
  morvo::test::RealDesktop::desktop = &desktop;
  qputenv("QT_QPA_PLATFORM", "xcb");
  const QApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
