#include "app/LocalUsage.h"

#include "base/SystemFileLayer.h"
#include "support/Awaited.h"
#include "support/ManualClock.h"
#include "support/ManualScheduler.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;

QByteArray reply(int tokens) {
  return R"({"type":"assistant","timestamp":")" +
         QDateTime::currentDateTimeUtc().toString(Qt::ISODate).toLatin1() +
         R"(","message":{"usage":{"input_tokens":)" + QByteArray::number(tokens) + "}}}\n";
}

TEST(LocalUsage, TheReadersRememberFromOneCaptureToTheNextWhatTheyRead) {
  const QTemporaryDir folder;
  ASSERT_TRUE(QDir(folder.path()).mkpath(u".claude/projects/p"_s));
  QFile log(folder.filePath(u".claude/projects/p/a.jsonl"_s));
  const auto write = [&log](const QByteArray &text) {
    ASSERT_TRUE(log.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(log.write(text), text.size());
    log.close();
  };
  SystemFileLayer files;
  const HookContext context{.home = {folder.path()},
                            .environment = Environment()
                                               .with(u"PATH"_s, folder.path())
                                               .with(u"MORVO_DISABLE_CLI_PROBES"_s, u"1"_s)
                                               .with(u"MORVO_DISABLE_CAUT"_s, u"1"_s),
                            .files = &files};
  const SystemClock clock;
  test::ManualClock probesClock;
  test::ManualScheduler scheduler(probesClock);
  WorkerPool pool;
  const auto source = LocalUsage::source(context, clock, scheduler, pool);
  const QByteArray around = QByteArray(8000, ' ') + '\n';
  const QByteArray before = around + reply(1);
  write(before + reply(2) + around);
  const auto first = test::Awaited(source->capture()).wait();
  ASSERT_TRUE(first && *first);
  EXPECT_EQ((*first)->weekTokens, 3);
  // What stands far from both ends of the known part is not read again; what is appended is.
  write(before + reply(9) + around + reply(4));
  const auto second = test::Awaited(source->capture()).wait();
  ASSERT_TRUE(second && *second);
  EXPECT_EQ((*second)->weekTokens, 7);
}

} // namespace
} // namespace morvo
