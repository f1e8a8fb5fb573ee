#include "monitor/ConnectSelfTest.h"
#include "base/Diagnostics.h"
#include "hooks/HookHome.h"

#include <QDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::HookHome;

QStringList linesOf(const HookContext &context) {
  QStringList lines;
  const Diagnostics::Capture capture([&](const QString &line) { lines << line; });
  ConnectSelfTest::run(context);
  return lines;
}

TEST(ConnectSelfTestTest, TellsEachStepAndLeavesTheRealSettingsAlone) {
  HookHome home;
  home.put(QStringLiteral(".claude/settings.json"), "{ \"mine\": 1 }");
  const QString other = home.path(QStringLiteral("other.json"));
  EXPECT_EQ(linesOf(home.context({{QStringLiteral("MORVO_SETTINGS_PATH"), other}})),
            (QStringList{QStringLiteral("[CONNECT] after connect#1: isConnected=true"),
                         QStringLiteral("[CONNECT] after connect#2(幂等): 命令出现 3 "
                                        "次(每事件1次=3次合理)"),
                         QStringLiteral("[CONNECT] after disconnect: isConnected=false")}));
  EXPECT_EQ(home.get(QStringLiteral(".claude/settings.json")), "{ \"mine\": 1 }");
  EXPECT_EQ(home.get(QStringLiteral("other.json")), "{}\n");
}

TEST(ConnectSelfTestTest, TellsFailuresAndGoesOn) {
  HookHome home;
  ASSERT_TRUE(QDir(home.home().path).mkpath(QStringLiteral(".claude/settings.json")));
  const QStringList lines = linesOf(home.context());
  ASSERT_EQ(lines.size(), 6);
  EXPECT_TRUE(lines[0].startsWith(QStringLiteral("[CONNECT] failed: 读不了 ")));
  EXPECT_EQ(lines[1], QStringLiteral("[CONNECT] after connect#1: isConnected=false"));
  EXPECT_TRUE(lines[3].contains(QStringLiteral("命令出现 0 次")));
}

} // namespace
} // namespace morvo
