#include "monitor/InboxWatcher.h"

#include "base/Diagnostics.h"
#include "platform/MorvoHome.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using namespace std::chrono_literals;

/// Long enough that only a watcher that is broken reaches it.
constexpr auto deadline = 30s;

/// Batches handed over on another thread.
class Received {
public:
  [[nodiscard]] InboxReader::Receiver receiver() {
    return [this](QList<QJsonObject> batch, const std::stop_token &) {
      const std::scoped_lock lock(m_mutex);
      for (const QJsonObject &signal : batch) {
        m_sources << signal.value(QStringLiteral("provider")).toString();
      }
      m_thread = std::this_thread::get_id();
      m_changed.notify_all();
    };
  }
  [[nodiscard]] bool waitFor(const QStringList &sources) {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, deadline, [&] { return m_sources == sources; });
  }
  [[nodiscard]] QStringList sources() {
    const std::scoped_lock lock(m_mutex);
    return m_sources;
  }
  [[nodiscard]] std::thread::id thread() {
    const std::scoped_lock lock(m_mutex);
    return m_thread;
  }

private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  QStringList m_sources;
  std::thread::id m_thread;
};

class InboxWatcherTest : public testing::Test {
protected:
  void append(const QByteArray &source) const {
    QFile file(MorvoHome::inbox(m_home));
    ASSERT_TRUE(file.open(QIODevice::Append));
    file.write(R"({"hook_event_name":"Stop","_src":")" + source + "\"}\n");
  }

  QTemporaryDir m_folder;
  HomeFolder m_home{m_folder.path()};
  Received m_received;
};

TEST_F(InboxWatcherTest, PollsEachOneAndAHalfSeconds) {
  EXPECT_EQ(InboxWatcher::pollPeriod, 1500ms);
}

TEST_F(InboxWatcherTest, CreatesTheInboxAtItsStart) {
  InboxWatcher watcher(m_home, {}, m_received.receiver());
  EXPECT_FALSE(QFileInfo::exists(MorvoHome::inbox(m_home))) << "nothing runs before the start";
  watcher.start();
  EXPECT_TRUE(QFileInfo(MorvoHome::inbox(m_home)).isFile());
}

TEST_F(InboxWatcherTest, HandsOverWhatIsAppendedAfterItsStartOnAThreadOfItsOwn) {
  MorvoHome::ensure(m_home);
  append("old");
  InboxWatcher watcher(m_home, {}, m_received.receiver(), 1ms);
  watcher.start();
  append("a");
  ASSERT_TRUE(m_received.waitFor({QStringLiteral("a")}));
  append("b");
  append("c");
  EXPECT_TRUE(m_received.waitFor({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
  EXPECT_NE(m_received.thread(), std::this_thread::get_id());
}

TEST_F(InboxWatcherTest, TheFirstPollComesOnePeriodAfterTheStart) {
  constexpr auto period = 50ms;
  InboxWatcher watcher(m_home, {}, m_received.receiver(), period);
  const auto before = std::chrono::steady_clock::now();
  watcher.start();
  append("a");
  ASSERT_TRUE(m_received.waitFor({QStringLiteral("a")}));
  EXPECT_GE(std::chrono::steady_clock::now() - before, period);
}

TEST_F(InboxWatcherTest, ItsEndDoesNotWaitForThePeriod) {
  const auto before = std::chrono::steady_clock::now();
  {
    InboxWatcher watcher(m_home, {}, m_received.receiver(), 1h);
    watcher.start();
  }
  EXPECT_LT(std::chrono::steady_clock::now() - before, deadline);
}

TEST_F(InboxWatcherTest, ItsEndIsSeenByAReceiverThatWaits) {
  std::mutex mutex;
  std::condition_variable_any changed;
  bool entered = false;
  bool stopped = false;
  {
    InboxWatcher watcher(
        m_home, {},
        [&](const QList<QJsonObject> &, const std::stop_token &stop) {
          std::unique_lock lock(mutex);
          entered = true;
          changed.notify_all();
          changed.wait(lock, stop, [] { return false; });
          stopped = true;
        },
        1ms);
    watcher.start();
    append("a");
    append("b");
    std::unique_lock lock(mutex);
    ASSERT_TRUE(changed.wait_for(lock, deadline, [&] { return entered; }));
  }
  EXPECT_TRUE(stopped);
}

TEST_F(InboxWatcherTest, IsHarmlessWhenItNeverStarted) {
  const InboxWatcher watcher(m_home, {}, m_received.receiver());
  EXPECT_EQ(m_received.sources(), QStringList{});
}

TEST_F(InboxWatcherTest, SurvivesAHomeThatCannotBeCreated) {
  InboxWatcher watcher(HomeFolder{QStringLiteral("/proc/nowhere")}, {}, m_received.receiver(), 1ms);
  watcher.start();
  EXPECT_EQ(m_received.sources(), QStringList{});
}

struct Debug {
  const char *value;
  bool tells;
};

class InboxWatcherDebug : public InboxWatcherTest, public testing::WithParamInterface<Debug> {};

TEST_P(InboxWatcherDebug, TellsItsStartOnlyWhenTheVariableIsOne) {
  QStringList lines;
  const Diagnostics::Capture capture([&](const QString &line) { lines << line; });
  const Environment environment(
      {{QStringLiteral("MORVO_DEBUG"), QString::fromUtf8(GetParam().value)}});
  InboxWatcher watcher(m_home, environment, m_received.receiver());
  watcher.start();
  EXPECT_EQ(lines, GetParam().tells
                       ? QStringList{QStringLiteral("[INBOX] watcher started (poll), offset=0")}
                       : QStringList{});
}

INSTANTIATE_TEST_SUITE_P(All, InboxWatcherDebug,
                         testing::Values(Debug{"1", true}, Debug{"0", false}, Debug{"", false},
                                         Debug{"true", false}, Debug{"11", false}));

} // namespace
} // namespace morvo
