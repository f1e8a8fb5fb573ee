#include "base/Diagnostics.h"
#include "base/QtScheduler.h"
#include "base/SystemFileLayer.h"
#include "platform/linux/LibsecretVault.h"
#include "platform/linux/SecretServiceStore.h"
#include "support/PrivateBus.h"
#include "support/RunUntil.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QTemporaryDir>

#include <condition_variable>
#include <csignal>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using test::runUntil;

const QString service = QStringLiteral("ai.zentaro.morvobar.test");
const QString account = QStringLiteral("api-key");
const QString secretsName = QStringLiteral("org.freedesktop.secrets");

/// Replaces the value of an item that is there.
const QString damager = QStringLiteral(R"(
import sys, dbus
NAME = 'org.freedesktop.secrets'
bus = dbus.SessionBus()
secrets = dbus.Interface(bus.get_object(NAME, '/org/freedesktop/secrets'),
                         'org.freedesktop.Secret.Service')
session = secrets.OpenSession('plain', '')[1]
found = secrets.SearchItems({'service': sys.argv[1], 'account': sys.argv[2]})[0]
item = dbus.Interface(bus.get_object(NAME, found[0]), 'org.freedesktop.Secret.Item')
item.SetSecret(dbus.Struct((session, dbus.ByteArray(b''), dbus.ByteArray(b'a\xff\xfeb'),
                            'text/plain'), signature='oayays'))
print('done', flush=True)
)");

/// The real keyring, with a home of its own and a collection that a throw-away password unlocks.
class PrivateKeyring {
public:
  explicit PrivateKeyring(const QTemporaryDir &home) : m_process(environmentIn(home.path())) {
    if (m_process.start(QStringLiteral("gnome-keyring-daemon"),
                        {QStringLiteral("--foreground"), QStringLiteral("--unlock"),
                         QStringLiteral("--components=secrets"),
                         QStringLiteral("--control-directory"), home.path()})) {
      m_process.process().write("throw-away");
      m_process.process().closeWriteChannel();
    }
  }
  void stop() const { m_process.signal(SIGSTOP); }
  void goOn() const { m_process.signal(SIGCONT); }
  void end() { m_process.end(); }

private:
  static QProcessEnvironment environmentIn(const QString &home) {
    auto environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : {QStringLiteral("HOME"), QStringLiteral("XDG_DATA_HOME"),
                                QStringLiteral("XDG_CONFIG_HOME"), QStringLiteral("XDG_CACHE_HOME"),
                                QStringLiteral("XDG_RUNTIME_DIR")}) {
      environment.insert(name, home);
    }
    return environment;
  }

  test::OwnedProcess m_process;
};

class SecretServiceTest : public testing::Test {
protected:
  /// GLib keeps one connection to the session bus for the whole process, so the bus must last.
  static void SetUpTestSuite() { bus() = std::make_unique<test::PrivateBus>(); }
  static void TearDownTestSuite() { bus().reset(); }
  static std::unique_ptr<test::PrivateBus> &bus() {
    static std::unique_ptr<test::PrivateBus> bus;
    return bus;
  }

  void startKeyring() {
    ASSERT_TRUE(runUntil([] { return !bus()->hasName(secretsName); }));
    m_keyring = std::make_unique<PrivateKeyring>(m_folder);
    ASSERT_TRUE(bus()->waitForName(secretsName));
  }
  /// Whether the work ends only when something wakes the stopped keyring. It is woken here when the
  /// work takes as long as no healthy machine would need, so that a call that waits for it returns.
  [[nodiscard]] bool waitsForKeyring(const std::function<void()> &work) const {
    std::mutex mutex;
    std::condition_variable ended;
    bool hasEnded = false;
    bool hadToWake = false;
    std::thread guard([&] {
      std::unique_lock lock(mutex);
      hadToWake = !ended.wait_for(lock, test::serviceGuard, [&] { return hasEnded; });
      if (hadToWake) {
        m_keyring->goOn();
      }
    });
    work();
    {
      const std::scoped_lock lock(mutex);
      hasEnded = true;
    }
    ended.notify_all();
    guard.join();
    return hadToWake;
  }
  void save(const QString &value) { m_store->save(value, service, account); }
  /// Until the keyring has confirmed it all.
  [[nodiscard]] bool settles() const {
    return runUntil([this] { return m_store->isSettled(); });
  }
  void open(SecretServiceStore::Deadlines deadlines = {.load = 20s, .save = 20s}) {
    m_store.reset();
    m_loads = 0;
    m_store = std::make_unique<SecretServiceStore>(std::make_shared<LibsecretVault>(), m_files,
                                                   m_path, m_scheduler, deadlines);
    m_store->onLoaded([this] { ++m_loads; });
  }
  void openLoaded(SecretServiceStore::Deadlines deadlines = {.load = 20s, .save = 20s}) {
    open(deadlines);
    ASSERT_TRUE(runUntil([this] { return m_loads > 0; }));
  }
  [[nodiscard]] std::optional<QString> read() const { return m_store->read(service, account); }
  [[nodiscard]] std::optional<QString> inKeyring() const {
    const auto secrets = LibsecretVault().load();
    const auto found =
        secrets ? secrets->find({service, account}) : SecretVault::Secrets::const_iterator();
    return secrets && found != secrets->end() ? std::optional(found->second) : std::nullopt;
  }
  [[nodiscard]] SecretFile::Entries inFile() {
    return SecretFile(m_files, m_path).read().value_or(SecretFile::Entries());
  }
  void lockKeyring() {
    auto message = QDBusMessage::createMethodCall(
        secretsName, QStringLiteral("/org/freedesktop/secrets"),
        QStringLiteral("org.freedesktop.Secret.Service"), QStringLiteral("Lock"));
    message << QVariant::fromValue(
        QList{QDBusObjectPath(QStringLiteral("/org/freedesktop/secrets/collection/login"))});
    const auto reply = bus()->control().call(message);
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
  }

  /// Puts bytes that are no UTF-8 into the item, as another program could.
  static void damageInKeyring() {
    test::OwnedProcess other;
    ASSERT_TRUE(other.start(QStringLiteral("/usr/bin/python3"),
                            {QStringLiteral("-c"), damager, service, account}));
    ASSERT_EQ(other.line(), "done");
  }

  QTemporaryDir m_folder;
  QString m_path = m_folder.filePath(QStringLiteral(".morvo/secrets.json"));
  SystemFileLayer m_files;
  QtScheduler m_scheduler;
  QStringList m_lines;
  Diagnostics::Capture m_capture{[this](const QString &line) { m_lines << line; }};
  std::unique_ptr<PrivateKeyring> m_keyring;
  std::unique_ptr<SecretServiceStore> m_store;
  int m_loads = 0;
};

TEST_F(SecretServiceTest, ASecretSurvivesTheProcessInTheKeyring) {
  startKeyring();
  openLoaded();
  EXPECT_EQ(read(), std::nullopt);
  save(QStringLiteral(" 密钥 \n"));
  ASSERT_TRUE(settles());
  EXPECT_EQ(inKeyring(), QStringLiteral("密钥"));
  openLoaded();
  EXPECT_EQ(read(), QStringLiteral("密钥"));
  EXPECT_TRUE(m_lines.isEmpty());
  EXPECT_FALSE(m_files.status(m_path));
}

TEST_F(SecretServiceTest, ASecondSaveReplacesTheItemAndARemovalDeletesIt) {
  startKeyring();
  openLoaded();
  save(QStringLiteral("one"));
  save(QStringLiteral("two"));
  ASSERT_TRUE(settles());
  EXPECT_EQ(inKeyring(), QStringLiteral("two"));
  const auto all = LibsecretVault().load();
  ASSERT_TRUE(all);
  EXPECT_EQ(all->size(), 1U);
  m_store->remove(service, account);
  ASSERT_TRUE(settles());
  EXPECT_EQ(inKeyring(), std::nullopt);
}

TEST_F(SecretServiceTest, ALockedCollectionLooksLikeAMissingItemAndASaveIsKeptForIt) {
  startKeyring();
  ASSERT_TRUE(LibsecretVault().store({service, account}, QStringLiteral("old")));
  lockKeyring();
  openLoaded();
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_TRUE(m_lines.isEmpty());
  m_store->save(QStringLiteral("new"), service, account);
  EXPECT_EQ(read(), QStringLiteral("new"));
  ASSERT_TRUE(runUntil([&] { return !inFile().empty(); }));
  EXPECT_EQ(m_lines.size(), 1);
  m_store.reset();
  m_keyring.reset();
  startKeyring();
  openLoaded();
  EXPECT_EQ(read(), QStringLiteral("new"));
  EXPECT_TRUE(runUntil([&] { return inFile().empty(); }));
  EXPECT_EQ(inKeyring(), QStringLiteral("new"));
}

TEST_F(SecretServiceTest, AValueThatIsNoTextReadsAsAbsentAndHidesNoOther) {
  startKeyring();
  ASSERT_TRUE(LibsecretVault().store({service, QStringLiteral("text")}, QStringLiteral("密")));
  ASSERT_TRUE(LibsecretVault().store({service, account}, QStringLiteral("to be damaged")));
  damageInKeyring();
  openLoaded();
  EXPECT_EQ(read(), std::nullopt);
  EXPECT_FALSE(m_store->has(service, account));
  EXPECT_EQ(m_store->read(service, QStringLiteral("text")), QStringLiteral("密"));
  EXPECT_TRUE(m_lines.isEmpty());
  save(QStringLiteral("whole again"));
  ASSERT_TRUE(settles());
  EXPECT_EQ(inKeyring(), QStringLiteral("whole again"));
}

TEST_F(SecretServiceTest, WithoutAServiceTheFileServes) {
  openLoaded();
  EXPECT_EQ(m_lines.size(), 1);
  m_store->save(QStringLiteral("value"), service, account);
  ASSERT_TRUE(runUntil([&] { return !inFile().empty(); }));
  openLoaded();
  EXPECT_EQ(read(), QStringLiteral("value"));
}

TEST_F(SecretServiceTest, AHungServiceHoldsUpNeitherTheStartNorTheEnd) {
  startKeyring();
  ASSERT_TRUE(LibsecretVault().store({service, account}, QStringLiteral("there")));
  m_keyring->stop();
  EXPECT_FALSE(waitsForKeyring([this] { open({.load = 100ms, .save = 100ms}); }));
  ASSERT_TRUE(runUntil([this] { return m_loads == 1; }));
  EXPECT_EQ(m_lines.size(), 1);
  m_store->save(QStringLiteral("mine"), service, QStringLiteral("other"));
  ASSERT_TRUE(runUntil([&] { return !inFile().empty(); }));
  // When it wakes, what it holds arrives and what it missed moves in.
  m_keyring->goOn();
  ASSERT_TRUE(runUntil([this] { return m_loads == 2; }));
  EXPECT_EQ(read(), QStringLiteral("there"));
  EXPECT_TRUE(runUntil([&] { return inFile().empty(); }));
  m_keyring->stop();
  m_store->save(QStringLiteral("late"), service, account);
  EXPECT_FALSE(waitsForKeyring([this] { m_store.reset(); }));
  EXPECT_EQ(inFile(), (SecretFile::Entries{{{service, account}, QStringLiteral("late")}}));
}

TEST_F(SecretServiceTest, AServiceThatIsStartedAnewIsFoundAgain) {
  startKeyring();
  openLoaded();
  save(QStringLiteral("one"));
  ASSERT_TRUE(settles());
  m_keyring.reset();
  startKeyring();
  // The first save may meet the old connection; then the file keeps it.
  save(QStringLiteral("two"));
  ASSERT_TRUE(settles());
  save(QStringLiteral("three"));
  ASSERT_TRUE(settles());
  EXPECT_EQ(inKeyring(), QStringLiteral("three"));
  EXPECT_TRUE(runUntil([&] { return inFile().empty(); }));
}

TEST_F(SecretServiceTest, TheEndOfTheBusIsNotTheEndOfTheProcess) {
  startKeyring();
  openLoaded();
  bus()->end();
  m_store->save(QStringLiteral("value"), service, account);
  EXPECT_TRUE(runUntil([&] { return !inFile().empty(); }));
}

TEST_F(SecretServiceTest, WithoutABusTheFileServes) {
  bus()->end();
  openLoaded();
  EXPECT_EQ(m_lines.size(), 1);
  m_store->save(QStringLiteral("value"), service, account);
  EXPECT_TRUE(runUntil([&] { return !inFile().empty(); }));
}

} // namespace
} // namespace morvo
