#include "support/OwnedProcess.h"
#include "support/PrivateBus.h"

#include <QApplication>

#include <gmock/gmock.h>

namespace {

constexpr auto innerVariable = "MORVO_TEST_ON_PRIVATE_DESKTOP";

/// Runs this program again on a screen and a bus of its own. Qt looks at both as soon as there is
/// an application, and only once, so they must stand before.
int runOnPrivateDesktop(const QStringList &arguments) {
  const morvo::test::PrivateBus bus;
  morvo::test::OwnedProcess screen;
  if (!screen.start(QStringLiteral("Xvfb"),
                    {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                     QStringLiteral("0"), QStringLiteral("800x600x24"), QStringLiteral("-nolisten"),
                     QStringLiteral("tcp")})) {
    return 1;
  }
  auto environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("DISPLAY"), u':' + QString::fromLatin1(screen.line()));
  environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
  environment.insert(QString::fromLatin1(innerVariable), QStringLiteral("1"));
  morvo::test::OwnedProcess inner(environment);
  inner.process().setProcessChannelMode(QProcess::ForwardedChannels);
  if (!inner.start(QCoreApplication::applicationFilePath(), arguments.mid(1))) {
    return 1;
  }
  inner.process().waitForFinished(-1);
  return inner.process().exitStatus() == QProcess::NormalExit ? inner.process().exitCode() : 1;
}

} // namespace

int main(int argc, char **argv) {
  const bool listsOnly = argc > 1 && QByteArray(argv[1]).startsWith("--gtest_list_tests");
  if (!listsOnly && !qEnvironmentVariableIsSet(innerVariable)) {
    const QCoreApplication application(argc, argv);
    return runOnPrivateDesktop(QCoreApplication::arguments());
  }
  std::unique_ptr<QCoreApplication> application;
  if (!listsOnly) {
    application = std::make_unique<QApplication>(argc, argv);
  }
  testing::InitGoogleMock(&argc, argv);
  return RUN_ALL_TESTS();
}
