#include "monitor/SignalMailbox.h"

#include "support/ManualClock.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <atomic>
#include <gtest/gtest.h>
#include <numeric>
#include <thread>

namespace morvo {
namespace {

using namespace std::chrono_literals;

/// Long enough that only a mailbox that is broken reaches it.
constexpr auto deadline = 30s;

const QString numberKey = QStringLiteral("number");

QList<QJsonObject> numbered(int number) { return {{{numberKey, number}}}; }

class SignalMailboxTest : public testing::Test {
protected:
  [[nodiscard]] std::unique_ptr<SignalMailbox> makeMailbox() {
    return std::make_unique<SignalMailbox>(m_clock, [this](const QList<QJsonObject> &batch) {
      ASSERT_EQ(batch.size(), 1);
      m_handled << batch.first().value(numberKey).toInt();
      m_onHandled();
    });
  }
  /// Handles events until the condition holds; false when it never does.
  template <typename Condition> [[nodiscard]] static bool runUntil(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
      QCoreApplication::processEvents(QEventLoop::AllEvents);
      if (std::chrono::steady_clock::now() > end) {
        return false;
      }
    }
    return true;
  }
  template <typename Condition> [[nodiscard]] static bool waitUntil(Condition condition) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
      std::this_thread::yield();
      if (std::chrono::steady_clock::now() > end) {
        return false;
      }
    }
    return true;
  }
  static void post(const InboxReader::Receiver &sender, int from, int to) {
    std::jthread([&] {
      for (int i = from; i < to; ++i) {
        sender(numbered(i), {});
      }
    }).join();
  }
  [[nodiscard]] static QList<int> numbers(int count) {
    QList<int> list(count);
    std::iota(list.begin(), list.end(), 0);
    return list;
  }

  test::ManualClock m_clock;
  QList<int> m_handled;
  std::function<void()> m_onHandled = [] {};
};

TEST_F(SignalMailboxTest, HandsOverEachBatchOnceAndInOrder) {
  const auto mailbox = makeMailbox();
  constexpr int count = 20000;
  const std::jthread thread([sender = mailbox->sender()] {
    for (int i = 0; i < count; ++i) {
      sender(numbered(i), {});
    }
  });
  ASSERT_TRUE(runUntil([&] { return m_handled.size() >= count; }));
  EXPECT_EQ(m_handled, numbers(count));
}

TEST_F(SignalMailboxTest, HandlesOnTheOwnersThread) {
  const auto mailbox = makeMailbox();
  std::thread::id handledOn;
  m_onHandled = [&] { handledOn = std::this_thread::get_id(); };
  post(mailbox->sender(), 0, 1);
  EXPECT_TRUE(m_handled.isEmpty()) << "nothing is handled before the owner's event loop runs";
  ASSERT_TRUE(runUntil([&] { return !m_handled.isEmpty(); }));
  EXPECT_EQ(handledOn, std::this_thread::get_id());
}

TEST_F(SignalMailboxTest, ManyBatchesTakeOneTurn) {
  const auto mailbox = makeMailbox();
  post(mailbox->sender(), 0, 500);
  QCoreApplication::processEvents(QEventLoop::AllEvents);
  EXPECT_EQ(m_handled.size(), 500);
}

TEST_F(SignalMailboxTest, GivesWayToOtherEventsAfterItsBudget) {
  const auto mailbox = makeMailbox();
  QList<qsizetype> handledAtTimer;
  QTimer other;
  QObject::connect(&other, &QTimer::timeout, [&] { handledAtTimer << m_handled.size(); });
  other.start(0);
  m_onHandled = [&] { m_clock.advance(1ms); };
  post(mailbox->sender(), 0, 40);
  ASSERT_TRUE(runUntil([&] { return m_handled.size() == 40; }));
  EXPECT_EQ(m_handled, numbers(40));
  ASSERT_FALSE(handledAtTimer.isEmpty());
  qsizetype last = 0;
  for (const qsizetype handled : handledAtTimer) {
    EXPECT_LE(handled - last, 8) << "a turn of more than the budget";
    last = handled;
  }
}

TEST_F(SignalMailboxTest, ASlowBatchTakesATurnOfItsOwn) {
  const auto mailbox = makeMailbox();
  m_onHandled = [&] { m_clock.advance(1s); };
  post(mailbox->sender(), 0, 3);
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(m_handled, numbers(1));
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(m_handled, numbers(2));
}

TEST_F(SignalMailboxTest, ASenderThatIsTooFastWaits) {
  const auto mailbox = makeMailbox();
  constexpr int capacity = SignalMailbox::capacity;
  constexpr int count = 4 * capacity;
  std::atomic<int> posted = 0;
  const std::jthread thread([&, sender = mailbox->sender()] {
    for (int i = 0; i < count; ++i) {
      sender(numbered(i), {});
      ++posted;
    }
  });
  ASSERT_TRUE(waitUntil([&] { return posted >= capacity; }));
  int mostInFlight = 0;
  m_onHandled = [&] {
    mostInFlight = std::max(mostInFlight, posted - static_cast<int>(m_handled.size()));
  };
  ASSERT_TRUE(runUntil([&] { return m_handled.size() >= count; }));
  EXPECT_EQ(m_handled, numbers(count));
  EXPECT_LE(mostInFlight, capacity);
}

TEST_F(SignalMailboxTest, LargeBatchesFillItByTheirBytes) {
  const auto mailbox = makeMailbox();
  constexpr int count = 40;
  constexpr int textLength = 4 * 1024 * 1024;
  constexpr int fitting = SignalMailbox::byteCapacity / (textLength * sizeof(QChar));
  const QString large(textLength, u'x');
  std::atomic<int> posted = 0;
  std::jthread thread([&, sender = mailbox->sender()](const std::stop_token &stop) {
    for (int i = 0; i < count; ++i) {
      sender({{{numberKey, i},
               {QStringLiteral("nested"), QJsonObject{{QStringLiteral("text"), large}}}}},
             stop);
      ++posted;
    }
  });
  ASSERT_TRUE(waitUntil([&] { return posted >= fitting - 1; }));
  // What finds no room after the stop is dropped, so what arrives is what fitted.
  thread.request_stop();
  thread.join();
  QCoreApplication::processEvents(QEventLoop::AllEvents);
  EXPECT_EQ(m_handled, numbers(fitting - 1)) << "keys and the objects themselves count too";
}

TEST_F(SignalMailboxTest, ABatchLargerThanTheCapacityPassesAlone) {
  const auto mailbox = makeMailbox();
  const QString huge(static_cast<qsizetype>(SignalMailbox::byteCapacity), u'x');
  const std::jthread thread([&, sender = mailbox->sender()] {
    sender({{{numberKey, 0}, {QStringLiteral("text"), huge}}}, {});
    sender({{{numberKey, 1}, {QStringLiteral("text"), huge}}}, {});
  });
  ASSERT_TRUE(runUntil([&] { return m_handled.size() == 2; }));
  EXPECT_EQ(m_handled, numbers(2));
}

TEST_F(SignalMailboxTest, ItsEndReleasesAWaitingSender) {
  auto mailbox = makeMailbox();
  std::atomic<int> posted = 0;
  std::jthread thread([&, sender = mailbox->sender()] {
    for (int i = 0; i < 2 * static_cast<int>(SignalMailbox::capacity); ++i) {
      sender(numbered(i), {});
      ++posted;
    }
  });
  ASSERT_TRUE(waitUntil([&] { return posted >= static_cast<int>(SignalMailbox::capacity); }));
  mailbox.reset();
  thread.join();
  QCoreApplication::processEvents(QEventLoop::AllEvents);
  EXPECT_TRUE(m_handled.isEmpty()) << "what was not handled by then is dropped";
}

TEST_F(SignalMailboxTest, AStopReleasesAWaitingSender) {
  const auto mailbox = makeMailbox();
  std::atomic<int> posted = 0;
  std::jthread thread([&, sender = mailbox->sender()](const std::stop_token &stop) {
    for (int i = 0; i < 2 * static_cast<int>(SignalMailbox::capacity); ++i) {
      sender(numbered(i), stop);
      ++posted;
    }
  });
  ASSERT_TRUE(waitUntil([&] { return posted >= static_cast<int>(SignalMailbox::capacity); }));
  thread.request_stop();
  thread.join();
  ASSERT_TRUE(
      runUntil([&] { return m_handled.size() >= static_cast<int>(SignalMailbox::capacity); }));
  EXPECT_EQ(m_handled, numbers(SignalMailbox::capacity));
}

TEST_F(SignalMailboxTest, ASenderMayOutliveIt) {
  auto mailbox = makeMailbox();
  const auto sender = mailbox->sender();
  mailbox.reset();
  post(sender, 0, 3);
  QCoreApplication::processEvents(QEventLoop::AllEvents);
  EXPECT_TRUE(m_handled.isEmpty());
}

TEST_F(SignalMailboxTest, TheHandlerMayDestroyIt) {
  auto mailbox = makeMailbox();
  m_onHandled = [&] { mailbox.reset(); };
  post(mailbox->sender(), 0, 3);
  QCoreApplication::processEvents(QEventLoop::AllEvents);
  EXPECT_EQ(m_handled, numbers(1));
}

TEST_F(SignalMailboxTest, AnEventLoopWithinTheHandlerHandlesTheNextBatches) {
  const auto mailbox = makeMailbox();
  bool nested = false;
  m_onHandled = [&] {
    if (!nested) {
      nested = true;
      EXPECT_TRUE(runUntil([&] { return m_handled.size() == 5; }));
    }
  };
  post(mailbox->sender(), 0, 5);
  QCoreApplication::processEvents(QEventLoop::AllEvents);
  EXPECT_EQ(m_handled, numbers(5));
}

} // namespace
} // namespace morvo
