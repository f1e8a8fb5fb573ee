#include "platform/linux/SecretServiceStore.h"

#include "base/AtomicFile.h"
#include "base/Diagnostics.h"
#include "base/SystemFileLayer.h"
#include "support/ManualScheduler.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <atomic>
#include <gtest/gtest.h>
#include <mutex>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using Failure = SecretVault::Failure;

const SecretKey token{QStringLiteral("auth"), QStringLiteral("access_token")};

/// A vault in memory that fails or hangs as the test says.
class TestVault final : public SecretVault {
public:
  [[nodiscard]] std::expected<Secrets, Failure> load() override {
    return answer<Secrets>([this] { return m_secrets; });
  }
  [[nodiscard]] std::expected<void, Failure> store(const SecretKey &key,
                                                   const QString &value) override {
    return answer<void>([&] { m_secrets[key] = value; });
  }
  [[nodiscard]] std::expected<void, Failure> erase(const SecretKey &key) override {
    return answer<void>([&] { m_secrets.erase(key); });
  }

  void fail(std::optional<Failure> failure) {
    const std::scoped_lock lock(m_mutex);
    m_failure = failure;
  }
  void hang() { m_isHanging = true; }
  void wake() {
    m_isHanging = false;
    m_isHanging.notify_all();
  }
  [[nodiscard]] Secrets secrets() {
    const std::scoped_lock lock(m_mutex);
    return m_secrets;
  }
  void put(const SecretKey &key, const QString &value) {
    const std::scoped_lock lock(m_mutex);
    m_secrets[key] = value;
  }

private:
  template <typename T, typename Work> std::expected<T, Failure> answer(const Work &work) {
    m_isHanging.wait(true);
    const std::scoped_lock lock(m_mutex);
    if (m_failure) {
      return std::unexpected(*m_failure);
    }
    if constexpr (std::is_void_v<T>) {
      work();
      return {};
    } else {
      return work();
    }
  }

  std::mutex m_mutex;
  Secrets m_secrets;
  std::optional<Failure> m_failure;
  std::atomic<bool> m_isHanging = false;
};

class SecretServiceStoreTest : public testing::Test {
protected:
  void SetUp() override { open(); }
  void open() {
    m_store.reset();
    m_store = std::make_unique<SecretServiceStore>(m_vault, m_files, m_path, m_scheduler,
                                                   SecretServiceStore::Deadlines{});
    m_store->onLoaded([this] { ++m_loads; });
    m_loads = 0;
  }
  void reopen(const std::function<void()> &between = [] {}) {
    m_store.reset();
    between();
    open();
  }
  void openLoaded() {
    reopen();
    until([this] { return m_loads > 0; });
  }
  template <typename Condition> static void until(const Condition &condition) {
    QEventLoop events;
    QTimer poll;
    QTimer guard;
    QObject::connect(&poll, &QTimer::timeout, &events, [&] {
      if (condition()) {
        events.quit();
      }
    });
    QObject::connect(&guard, &QTimer::timeout, &events, &QEventLoop::quit);
    poll.start(1ms);
    guard.start(30s);
    events.exec();
    ASSERT_TRUE(condition());
  }
  [[nodiscard]] std::optional<QString> read() const {
    return m_store->read(token.service, token.account);
  }
  void save(const QString &value) { m_store->save(value, token.service, token.account); }
  [[nodiscard]] SecretFile::Entries inFile() {
    return SecretFile(m_files, m_path).read().value_or(SecretFile::Entries());
  }
  void leaveInFile(const std::optional<QString> &value) {
    ASSERT_TRUE(SecretFile(m_files, m_path).put({{token, value}}));
  }

  QTemporaryDir m_folder;
  QString m_path = m_folder.filePath(QStringLiteral(".morvo/secrets.json"));
  SystemFileLayer m_files;
  test::ManualClock m_clock;
  test::ManualScheduler m_scheduler{m_clock};
  QStringList m_lines;
  Diagnostics::Capture m_capture{[this](const QString &line) { m_lines << line; }};
  std::shared_ptr<TestVault> m_vault = std::make_shared<TestVault>();
  std::unique_ptr<SecretServiceStore> m_store;
  int m_loads = 0;
};

TEST_F(SecretServiceStoreTest, ServesWhatTheServiceHolds) {
  m_vault->put(token, QStringLiteral("密"));
  openLoaded();
  EXPECT_EQ(read(), QStringLiteral("密"));
  EXPECT_TRUE(m_store->has(token.service, token.account));
  EXPECT_EQ(m_store->read(token.service, QStringLiteral("other")), std::nullopt);
  EXPECT_TRUE(m_lines.isEmpty());
}

TEST_F(SecretServiceStoreTest, AHandlerAddedAfterTheLoadIsCalledToo) {
  openLoaded();
  bool called = false;
  m_store->onLoaded([&] { called = true; });
  EXPECT_FALSE(called);
  until([&] { return called; });
}

TEST_F(SecretServiceStoreTest, WritesThroughAndReadsAtOnce) {
  openLoaded();
  save(QStringLiteral(" \tkey\r\n"));
  EXPECT_EQ(read(), QStringLiteral("key"));
  until([&] { return m_vault->secrets() == SecretVault::Secrets{{token, QStringLiteral("key")}}; });
  EXPECT_TRUE(inFile().empty());
  EXPECT_FALSE(m_files.status(m_path));
}

TEST_F(SecretServiceStoreTest, SavingABlankTextLeavesTheItemAsItWas) {
  m_vault->put(token, QStringLiteral("kept"));
  openLoaded();
  for (const QString &blank : {QString(), QStringLiteral("  \r\n\t")}) {
    save(blank);
    EXPECT_EQ(read(), QStringLiteral("kept"));
    EXPECT_TRUE(m_store->has(token.service, token.account));
  }
  EXPECT_EQ(m_scheduler.pending(), 0U);
}

TEST_F(SecretServiceStoreTest, RemovingForgetsHereAndThere) {
  m_vault->put(token, QStringLiteral("old"));
  openLoaded();
  m_store->remove(token.service, token.account);
  EXPECT_EQ(read(), std::nullopt);
  until([&] { return m_vault->secrets().empty(); });
}

TEST_F(SecretServiceStoreTest, WithoutServiceSecretsStandInAFileForTheUserAlone) {
  m_vault->fail(Failure::unreachable);
  openLoaded();
  save(QStringLiteral("value"));
  EXPECT_EQ(read(), QStringLiteral("value"));
  until([&] { return !inFile().empty(); });
  EXPECT_EQ(m_files.status(m_path)->mode, 0600U);
  EXPECT_EQ(m_files.status(m_folder.filePath(QStringLiteral(".morvo")))->mode, 0700U);
  openLoaded();
  EXPECT_EQ(read(), QStringLiteral("value"));
}

TEST_F(SecretServiceStoreTest, OneLineSaysWhereSecretsAreKeptAndHoldsNone) {
  m_vault->fail(Failure::unreachable);
  openLoaded();
  m_lines.clear();
  openLoaded();
  save(QStringLiteral("hush"));
  until([&] { return !inFile().empty(); });
  ASSERT_EQ(m_lines.size(), 1);
  EXPECT_TRUE(m_lines.front().contains(m_path));
  EXPECT_FALSE(m_lines.front().contains(QStringLiteral("hush")));
}

TEST_F(SecretServiceStoreTest, ASaveIntoALockedServiceIsKeptInTheFileAndMovesOverLater) {
  openLoaded();
  m_vault->fail(Failure::locked);
  save(QStringLiteral("value"));
  until([&] { return !inFile().empty(); });
  EXPECT_EQ(m_lines.size(), 1);
  m_vault->fail(std::nullopt);
  openLoaded();
  EXPECT_EQ(read(), QStringLiteral("value"));
  until([&] { return inFile().empty(); });
  EXPECT_EQ(m_vault->secrets(), (SecretVault::Secrets{{token, QStringLiteral("value")}}));
  EXPECT_FALSE(m_files.status(m_path));
  EXPECT_EQ(read(), QStringLiteral("value"));
}

TEST_F(SecretServiceStoreTest, TheFileIsNewerThanTheService) {
  m_vault->put(token, QStringLiteral("old"));
  leaveInFile(QStringLiteral("new"));
  openLoaded();
  EXPECT_EQ(read(), QStringLiteral("new"));
  until([&] { return m_vault->secrets().at(token) == QStringLiteral("new"); });
}

TEST_F(SecretServiceStoreTest, ARemovalThatTheServiceMissedIsMadeUpFor) {
  m_vault->put(token, QStringLiteral("old"));
  openLoaded();
  m_vault->fail(Failure::locked);
  m_store->remove(token.service, token.account);
  until([&] { return !inFile().empty(); });
  m_vault->fail(std::nullopt);
  openLoaded();
  EXPECT_EQ(read(), std::nullopt);
  until([&] { return m_vault->secrets().empty() && inFile().empty(); });
}

TEST_F(SecretServiceStoreTest, AHungServiceHoldsNothingUp) {
  leaveInFile(QStringLiteral("of file"));
  m_vault->hang();
  reopen();
  until([this] { return read().has_value(); });
  EXPECT_EQ(m_loads, 0);
  m_scheduler.advance(3s);
  EXPECT_EQ(m_loads, 1);
  EXPECT_EQ(read(), QStringLiteral("of file"));
  EXPECT_EQ(m_lines.size(), 1);
  // The end is not held up either.
  m_store.reset();
  m_vault->wake();
}

TEST_F(SecretServiceStoreTest, WhatASlowServiceSaysAtLastIsTaken) {
  const SecretKey other{QStringLiteral("auth"), QStringLiteral("refresh_token")};
  m_vault->put(token, QStringLiteral("slow"));
  m_vault->put(other, QStringLiteral("old"));
  m_vault->hang();
  reopen();
  until([this] {
    m_scheduler.advance(3s);
    return m_loads == 1;
  });
  m_store->save(QStringLiteral("newer"), other.service, other.account);
  m_vault->wake();
  until([this] { return m_loads == 2; });
  EXPECT_EQ(read(), QStringLiteral("slow"));
  EXPECT_EQ(m_store->read(other.service, other.account), QStringLiteral("newer"));
  until([&] { return m_vault->secrets().at(other) == QStringLiteral("newer"); });
}

TEST_F(SecretServiceStoreTest, ASaveThatAHungServiceDoesNotConfirmIsKeptInTheFileUntilItDoes) {
  openLoaded();
  m_vault->hang();
  save(QStringLiteral("value"));
  EXPECT_TRUE(inFile().empty());
  m_scheduler.advance(3s);
  until([&] { return !inFile().empty(); });
  m_vault->wake();
  until([&] { return inFile().empty(); });
  EXPECT_EQ(m_vault->secrets().at(token), QStringLiteral("value"));
}

TEST_F(SecretServiceStoreTest, TheLastOfManySavesWins) {
  openLoaded();
  for (int i = 0; i < 50; ++i) {
    save(QString::number(i));
  }
  EXPECT_EQ(read(), QStringLiteral("49"));
  until([&] {
    const auto secrets = m_vault->secrets();
    return secrets.contains(token) && secrets.at(token) == QStringLiteral("49");
  });
  EXPECT_TRUE(inFile().empty());
}

TEST_F(SecretServiceStoreTest, AnUnconfirmedSaveGoesToTheFileAtTheEnd) {
  openLoaded();
  m_vault->hang();
  save(QStringLiteral("value"));
  m_store.reset();
  EXPECT_EQ(inFile(), (SecretFile::Entries{{token, QStringLiteral("value")}}));
  m_vault->wake();
}

TEST_F(SecretServiceStoreTest, AFileThatCannotBeWrittenIsSaidWithoutTheSecret) {
  ASSERT_TRUE(AtomicFile::write(m_files, m_folder.filePath(QStringLiteral(".morvo")), "a file"));
  m_vault->fail(Failure::unreachable);
  openLoaded();
  m_lines.clear();
  save(QStringLiteral("hush"));
  until([&] { return !m_lines.isEmpty(); });
  EXPECT_FALSE(m_lines.join(u' ').contains(QStringLiteral("hush")));
  EXPECT_EQ(read(), QStringLiteral("hush"));
}

class SecretFileTest : public testing::Test {
protected:
  QTemporaryDir m_folder;
  QString m_path = m_folder.filePath(QStringLiteral("secrets.json"));
  SystemFileLayer m_files;
  SecretFile m_file{m_files, m_path};
};

TEST_F(SecretFileTest, ADamagedFileHasNoEntries) {
  for (const QByteArray &content :
       {QByteArray("\0\xff", 2), QByteArray("[1]"), QByteArray("{\"a\":1,\"b\":{\"c\":[]}}")}) {
    ASSERT_TRUE(AtomicFile::write(m_files, m_path, content));
    EXPECT_EQ(m_file.read(), SecretFile::Entries());
  }
}

TEST_F(SecretFileTest, AFileThatWasOpenToOthersIsClosedWithTheNextWrite) {
  ASSERT_TRUE(AtomicFile::write(m_files, m_path, "{}", {.mode = 0644}));
  ASSERT_TRUE(m_file.put({{token, QStringLiteral("x")}}));
  EXPECT_EQ(m_files.status(m_path)->mode, 0600U);
}

TEST_F(SecretFileTest, KeepsTheOtherEntries) {
  const SecretKey other{QStringLiteral("a/b"), QStringLiteral("密")};
  ASSERT_TRUE(m_file.put({{token, QStringLiteral("x")}, {other, std::nullopt}}));
  ASSERT_TRUE(m_file.put({{token, QStringLiteral("y")}}));
  EXPECT_EQ(m_file.read(),
            (SecretFile::Entries{{token, QStringLiteral("y")}, {other, std::nullopt}}));
  ASSERT_TRUE(m_file.erase(token));
  EXPECT_EQ(m_file.read(), (SecretFile::Entries{{other, std::nullopt}}));
}

} // namespace
} // namespace morvo
