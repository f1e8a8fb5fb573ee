#include "platform/linux/LocalSingleInstance.h"

#include "base/QtScheduler.h"
#include "platform/linux/InstanceMessage.h"

#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QThread>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using Role = SingleInstance::Role;

constexpr auto shortDeadline = 150ms;

/// Another process that plays the first instance until it is killed.
class OtherProcess {
public:
  /// `work` runs there; the constructor returns when it calls its argument.
  template <typename Work> explicit OtherProcess(const Work &work) {
    std::array<int, 2> pipe{};
    EXPECT_EQ(::pipe2(pipe.data(), O_CLOEXEC), 0);
    m_process = ::fork();
    if (m_process == 0) {
      work([&] { EXPECT_EQ(::write(pipe[1], "r", 1), 1); });
      for (;;) {
        ::pause();
      }
    }
    ::close(pipe[1]);
    char ready = 0;
    EXPECT_EQ(::read(pipe[0], &ready, 1), 1);
    ::close(pipe[0]);
  }
  OtherProcess(const OtherProcess &) = delete;
  OtherProcess &operator=(const OtherProcess &) = delete;
  ~OtherProcess() { kill(); }

  void kill() {
    if (m_process > 0) {
      ::kill(m_process, SIGKILL);
      ::waitpid(m_process, nullptr, 0);
      m_process = -1;
    }
  }

private:
  pid_t m_process = -1;
};

class LocalSingleInstanceTest : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_EQ(::chmod(QFile::encodeName(m_runtime.path()).constData(), 0700), 0);
  }
  [[nodiscard]] Environment environment() const {
    return Environment{{{QStringLiteral("XDG_RUNTIME_DIR"), m_runtime.path()},
                        {QStringLiteral("TMPDIR"), m_temporary.path()}}};
  }
  [[nodiscard]] LocalSingleInstance make(std::chrono::milliseconds deadline = 5s) const {
    return {m_home, environment(), deadline};
  }
  /// Settles in another thread, while this one's events run.
  Role settleElsewhere(const QStringList &words, const HomeFolder &home) {
    Role role = Role::unsettled;
    QEventLoop events;
    const std::unique_ptr<QThread> other(QThread::create(
        [&] { role = LocalSingleInstance(home, environment(), 5s).settle(words); }));
    QObject::connect(other.get(), &QThread::finished, &events, &QEventLoop::quit);
    other->start();
    events.exec();
    other->wait();
    return role;
  }
  Role settleElsewhere(const QStringList &words) { return settleElsewhere(words, m_home); }
  static QStringList entries(const QTemporaryDir &folder) {
    return QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
  }
  [[nodiscard]] QString socketPath() const {
    return m_runtime.filePath(entries(m_runtime).filter(QStringLiteral("morvobar-")).value(0));
  }
  /// What the first instance answers to these bytes: its bytes until it hangs up.
  static QByteArray answerTo(const QString &path, const QByteArray &bytes) {
    QByteArray answer;
    QEventLoop events;
    QLocalSocket socket;
    QObject::connect(&socket, &QLocalSocket::disconnected, &events, &QEventLoop::quit);
    socket.connectToServer(path);
    socket.write(bytes);
    if (socket.state() != QLocalSocket::UnconnectedState) {
      events.exec();
    }
    return socket.readAll();
  }

  QTemporaryDir m_runtime;
  QTemporaryDir m_temporary;
  QTemporaryDir m_homeFolder;
  HomeFolder m_home{m_homeFolder.path()};
};

TEST_F(LocalSingleInstanceTest, TheFirstStartIsFirst) {
  auto first = make();
  EXPECT_EQ(first.settle({QStringLiteral("morvobar")}), Role::first);
}

TEST_F(LocalSingleInstanceTest, ALaterStartHandsItsWordsOver) {
  auto first = make();
  ASSERT_EQ(first.settle({}), Role::first);
  std::vector<QStringList> taken;
  first.onWords([&](const QStringList &words) { taken.push_back(words); });
  const QStringList words{QStringLiteral("morvobar"),
                          QStringLiteral("morvopet://auth?code=a b&x=值"), QString(),
                          QStringLiteral("two\nlines")};
  EXPECT_EQ(settleElsewhere(words), Role::handedOver);
  EXPECT_EQ(settleElsewhere({}), Role::handedOver);
  EXPECT_EQ(taken, (std::vector<QStringList>{words, {}}));
}

TEST_F(LocalSingleInstanceTest, WordsWaitForAHandler) {
  auto first = make();
  ASSERT_EQ(first.settle({}), Role::first);
  ASSERT_EQ(settleElsewhere({QStringLiteral("early")}), Role::handedOver);
  QEventLoop events;
  QStringList taken;
  first.onWords([&](const QStringList &words) {
    taken = words;
    events.quit();
  });
  EXPECT_TRUE(taken.isEmpty());
  events.exec();
  EXPECT_EQ(taken, QStringList{QStringLiteral("early")});
}

TEST_F(LocalSingleInstanceTest, EachHomeFolderHasItsOwnInstance) {
  auto first = make();
  ASSERT_EQ(first.settle({}), Role::first);
  const QTemporaryDir other;
  EXPECT_EQ(settleElsewhere({}, HomeFolder{other.path()}), Role::first);
}

TEST_F(LocalSingleInstanceTest, AHomeFolderReachedThroughALinkIsTheSame) {
  auto first = make();
  ASSERT_EQ(first.settle({}), Role::first);
  const QString link = m_temporary.filePath(QStringLiteral("home"));
  ASSERT_TRUE(QFile::link(m_home.path, link));
  EXPECT_EQ(settleElsewhere({}, HomeFolder{link}), Role::handedOver);
}

TEST_F(LocalSingleInstanceTest, AnEndedInstanceLeavesItsPlaceAndNoFiles) {
  {
    auto first = make();
    ASSERT_EQ(first.settle({}), Role::first);
  }
  EXPECT_EQ(entries(m_runtime), QStringList());
  auto next = make();
  EXPECT_EQ(next.settle({}), Role::first);
}

TEST_F(LocalSingleInstanceTest, AKilledInstanceLeavesItsPlace) {
  OtherProcess other([&](const auto &ready) {
    auto *first = new LocalSingleInstance(m_home, environment());
    EXPECT_EQ(first->settle({}), Role::first);
    ready();
  });
  other.kill();
  ASSERT_EQ(entries(m_runtime).size(), 1);
  auto next = make();
  EXPECT_EQ(next.settle({}), Role::first);
  EXPECT_EQ(entries(m_runtime).size(), 1);
  EXPECT_EQ(settleElsewhere({QStringLiteral("x")}), Role::handedOver);
}

TEST_F(LocalSingleInstanceTest, AHungInstanceIsGivenUpAtTheDeadline) {
  const OtherProcess other([&](const auto &ready) {
    auto *first = new LocalSingleInstance(m_home, environment());
    EXPECT_EQ(first->settle({}), Role::first);
    ready();
  });
  auto second = make(shortDeadline);
  EXPECT_EQ(second.settle({QStringLiteral("x")}), Role::unreachable);
}

TEST_F(LocalSingleInstanceTest, AnInstanceWithoutSocketIsGivenUpAtTheDeadline) {
  const OtherProcess other([&](const auto &ready) {
    auto *first = new LocalSingleInstance(m_home, environment());
    EXPECT_EQ(first->settle({}), Role::first);
    QFile::remove(socketPath());
    ready();
  });
  auto second = make(shortDeadline);
  EXPECT_EQ(second.settle({QStringLiteral("x")}), Role::unreachable);
}

TEST_F(LocalSingleInstanceTest, WordsBeyondTheLimitAreRefused) {
  auto first = make();
  ASSERT_EQ(first.settle({}), Role::first);
  int taken = 0;
  first.onWords([&](const QStringList &) { ++taken; });
  EXPECT_EQ(settleElsewhere({QString(LocalSingleInstance::longestWords, u'x')}), Role::unreachable);
  EXPECT_EQ(taken, 0);
  EXPECT_EQ(settleElsewhere({QString(LocalSingleInstance::longestWords - 1, u'x')}),
            Role::handedOver);
  EXPECT_EQ(taken, 1);
}

TEST_F(LocalSingleInstanceTest, DamagedMessagesAreHungUpOn) {
  auto first = make();
  ASSERT_EQ(first.settle({}), Role::first);
  int taken = 0;
  first.onWords([&](const QStringList &) { ++taken; });
  EXPECT_EQ(answerTo(socketPath(), QByteArray("\xff\xff\xff\xff", 4)), QByteArray());
  EXPECT_EQ(answerTo(socketPath(), QByteArray("\0\0\0\2\xff\0", 6)), QByteArray());
  EXPECT_EQ(answerTo(socketPath(), QByteArray("\0\0\0\1x", 5)), QByteArray());
  EXPECT_EQ(taken, 0);
  EXPECT_EQ(answerTo(socketPath(), QByteArray("\0\0\0\2x\0", 6)), QByteArray("\x06"));
  EXPECT_EQ(taken, 1);
}

TEST_F(LocalSingleInstanceTest, TheSocketIsForTheUserAlone) {
  auto first = make();
  ASSERT_EQ(first.settle({}), Role::first);
  struct stat info{};
  ASSERT_EQ(::stat(QFile::encodeName(socketPath()).constData(), &info), 0);
  EXPECT_EQ(info.st_mode & 0077U, 0U);
}

TEST_F(LocalSingleInstanceTest, ARuntimeFolderOpenToOthersIsNotTrusted) {
  ASSERT_EQ(::chmod(QFile::encodeName(m_runtime.path()).constData(), 0755), 0);
  auto first = make();
  EXPECT_EQ(first.settle({}), Role::first);
  EXPECT_EQ(entries(m_runtime), QStringList());
  EXPECT_EQ(entries(m_temporary), QStringList{QStringLiteral("morvobar-%1").arg(::getuid())});
}

TEST_F(LocalSingleInstanceTest, AFolderThatSomeonePlantedInTheTemporaryFolderIsNotTrusted) {
  const QString planted = m_temporary.filePath(QStringLiteral("morvobar-%1").arg(::getuid()));
  ASSERT_TRUE(QFile::link(m_homeFolder.path(), planted));
  LocalSingleInstance first(m_home, Environment{{{QStringLiteral("TMPDIR"), m_temporary.path()}}});
  EXPECT_EQ(first.settle({}), Role::first);
  EXPECT_EQ(entries(m_homeFolder), QStringList());
}

TEST_F(LocalSingleInstanceTest, AHomeThatIsCreatedByTheFirstStartIsTheSameForTheSecond) {
  const QString link = m_temporary.filePath(QStringLiteral("link"));
  ASSERT_TRUE(QFile::link(m_homeFolder.path(), link));
  const HomeFolder later{link + QStringLiteral("/new")};
  LocalSingleInstance first(later, environment(), 5s);
  ASSERT_EQ(first.settle({}), Role::first);
  EXPECT_EQ(settleElsewhere({}, later), Role::handedOver);
}

TEST_F(LocalSingleInstanceTest, AStartFromAnotherEnvironmentFindsTheRunningInstance) {
  LocalSingleInstance first(m_home, Environment{{{QStringLiteral("TMPDIR"), m_temporary.path()}}},
                            5s);
  ASSERT_EQ(first.settle({}), Role::first);
  EXPECT_EQ(settleElsewhere({}), Role::handedOver);
}

TEST_F(LocalSingleInstanceTest, WithoutAPlaceForTheLockTheStartGoesOnAlone) {
  QFile file(m_homeFolder.filePath(QStringLiteral("file")));
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  LocalSingleInstance lone(HomeFolder{file.fileName()}, environment());
  EXPECT_EQ(lone.settle({}), Role::unsettled);
}

TEST(InstanceMessageTest, AMessageInPiecesIsWaitedFor) {
  const QStringList words{QStringLiteral("a"), QString(), QStringLiteral("值")};
  const QByteArray message = *InstanceMessage::encode(words, 100);
  for (qsizetype size = 0; size < message.size(); ++size) {
    EXPECT_EQ(InstanceMessage::decode(message.first(size), 100),
              std::unexpected(InstanceMessage::Failure::incomplete));
  }
  EXPECT_EQ(InstanceMessage::decode(message, 100), words);
}

TEST(InstanceMessageTest, OneEmptyWordIsNotNoWord) {
  for (const QStringList &words : {QStringList(), QStringList{QString()}}) {
    EXPECT_EQ(InstanceMessage::decode(*InstanceMessage::encode(words, 100), 100), words);
  }
}

TEST(InstanceMessageTest, AWordWithAZeroInsideIsRefused) {
  EXPECT_EQ(InstanceMessage::encode({QString(QChar::Null)}, 100),
            std::unexpected(InstanceMessage::Failure::damaged));
}

} // namespace
} // namespace morvo
