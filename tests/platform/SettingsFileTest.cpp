#include "platform/qt/SettingsFile.h"

#include "base/AtomicFile.h"
#include "base/SystemFileLayer.h"

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace morvo {
namespace {

class SettingsFileTest : public testing::Test {
protected:
  /// Runs `work` in another process; its number.
  template <typename Work> static pid_t elsewhere(const Work &work) {
    const pid_t child = ::fork();
    if (child == 0) {
      work();
      ::_exit(0);
    }
    return child;
  }
  static void join(pid_t child) {
    int status = -1;
    ASSERT_EQ(::waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
  }
  void putContent(const QByteArray &content) {
    ASSERT_TRUE(AtomicFile::write(m_files, m_path, content));
  }

  QTemporaryDir m_folder;
  QString m_path = m_folder.filePath(QStringLiteral("config/morvobar/settings.ini"));
  QString m_key = QStringLiteral("morvo.set.appearance");
  SystemFileLayer m_files;
};

TEST_F(SettingsFileTest, AMissingFileHasNothingAndIsNotMadeByReading) {
  const SettingsFile settings(m_path);
  EXPECT_EQ(settings.object(m_key), std::nullopt);
  EXPECT_FALSE(m_files.status(m_path));
}

TEST_F(SettingsFileTest, TheFolderAndTheFileAreForTheUserAlone) {
  const auto mask = ::umask(0);
  SettingsFile(m_path).set(m_key, QStringLiteral("light"));
  ::umask(mask);
  EXPECT_EQ(m_files.status(m_path)->mode, 0600U);
  EXPECT_EQ(m_files.status(m_folder.filePath(QStringLiteral("config/morvobar")))->mode, 0700U);
}

TEST_F(SettingsFileTest, KeepsTextsAsTheyAre) {
  const QStringList texts{QString(),
                          QStringLiteral(" 空格 "),
                          QStringLiteral("a,b;c=d\n\"e\"\\f\t%20"),
                          QStringLiteral("@Invalid()"),
                          QStringLiteral("@@x"),
                          QString::fromUtf8("\xF0\x9F\x90\x99"),
                          QStringLiteral("{\"a\":[1,2]}")};
  for (const QString &text : texts) {
    SettingsFile(m_path).set(m_key, text);
    EXPECT_EQ(SettingsFile(m_path).object(m_key), std::optional(QVariant(text)))
        << text.toStdString();
  }
}

TEST_F(SettingsFileTest, KeepsBytesAsTheyAre) {
  const QByteArray bytes("\0\xff{\"a\":1}\n,", 11);
  SettingsFile(m_path).set(m_key, bytes);
  EXPECT_EQ(SettingsFile(m_path).object(m_key), std::optional(QVariant(bytes)));
}

TEST_F(SettingsFileTest, KeepsNumbersExactly) {
  for (const double number : {0.1, 1e-300, 1.0 / 3, 12345678901234.5}) {
    SettingsFile(m_path).set(m_key, number);
    EXPECT_EQ(SettingsFile(m_path).object(m_key)->toDouble(), number);
  }
}

TEST_F(SettingsFileTest, ARemovedKeyIsGone) {
  SettingsFile settings(m_path);
  settings.set(m_key, 1);
  settings.remove(m_key);
  EXPECT_EQ(settings.object(m_key), std::nullopt);
  EXPECT_EQ(SettingsFile(m_path).object(m_key), std::nullopt);
}

TEST_F(SettingsFileTest, AChangeByAnotherProcessActsAtTheNextRead) {
  SettingsFile settings(m_path);
  settings.set(m_key, QStringLiteral("dark"));
  ASSERT_EQ(settings.object(m_key), std::optional(QVariant(QStringLiteral("dark"))));
  join(elsewhere([&] { SettingsFile(m_path).set(m_key, QStringLiteral("light")); }));
  EXPECT_EQ(settings.object(m_key), std::optional(QVariant(QStringLiteral("light"))));
  join(elsewhere([&] { SettingsFile(m_path).remove(m_key); }));
  EXPECT_EQ(settings.object(m_key), std::nullopt);
}

TEST_F(SettingsFileTest, QuickChangesOfTheSameLengthByAnotherProcessAreAllSeen) {
  SettingsFile settings(m_path);
  for (int round = 0; round < 100; ++round) {
    join(elsewhere([&] { SettingsFile(m_path).set(m_key, 100 + round); }));
    ASSERT_EQ(settings.object(m_key)->toInt(), 100 + round);
  }
}

TEST_F(SettingsFileTest, TwoProcessesWritingAtOnceLoseNothing) {
  constexpr int keys = 200;
  const auto write = [this](const QString &prefix) {
    SettingsFile settings(m_path);
    for (int i = 0; i < keys; ++i) {
      settings.set(prefix + QString::number(i), 100 + i);
    }
  };
  const pid_t one = elsewhere([&] { write(QStringLiteral("one.")); });
  const pid_t two = elsewhere([&] { write(QStringLiteral("two.")); });
  join(one);
  join(two);
  const SettingsFile settings(m_path);
  for (const QString &prefix : {QStringLiteral("one."), QStringLiteral("two.")}) {
    for (int i = 0; i < keys; ++i) {
      const auto value = settings.object(prefix + QString::number(i));
      ASSERT_TRUE(value) << prefix.toStdString() << i;
      EXPECT_EQ(value->toInt(), 100 + i);
    }
  }
}

TEST_F(SettingsFileTest, ThreadsMayShareIt) {
  SettingsFile settings(m_path);
  const auto write = [&](const QString &prefix) {
    for (int i = 0; i < 50; ++i) {
      settings.set(prefix + QString::number(i), i);
      static_cast<void>(settings.object(prefix));
    }
  };
  {
    const std::jthread one(write, QStringLiteral("one."));
    const std::jthread two(write, QStringLiteral("two."));
  }
  EXPECT_TRUE(settings.object(QStringLiteral("one.49")));
  EXPECT_TRUE(settings.object(QStringLiteral("two.49")));
}

TEST_F(SettingsFileTest, AStepComesIntoTheFileAsAWhole) {
  SettingsFile settings(m_path);
  settings.set(m_key, QStringLiteral("before"));
  settings.set(QStringLiteral("gone"), 1);
  const auto before = m_files.read(m_path);
  ASSERT_TRUE(before);
  settings.atOnce([&] {
    settings.set(m_key, QStringLiteral("after"));
    settings.remove(QStringLiteral("gone"));
    settings.set(QStringLiteral("more"), 1);
    EXPECT_EQ(settings.object(m_key), std::optional(QVariant(QStringLiteral("after"))));
    EXPECT_EQ(settings.object(QStringLiteral("gone")), std::nullopt);
    EXPECT_EQ(m_files.read(m_path), before);
  });
  EXPECT_EQ(m_files.read(m_path), "[General]\nmore=1\nmorvo.set.appearance=after\n");
}

TEST_F(SettingsFileTest, AStepBeginsWithWhatAnotherProcessWrote) {
  SettingsFile settings(m_path);
  settings.set(m_key, 1);
  join(elsewhere([&] { SettingsFile(m_path).set(m_key, 2); }));
  settings.atOnce([&] { EXPECT_EQ(settings.object(m_key)->toInt(), 2); });
}

TEST_F(SettingsFileTest, AProcessThatDiesInAStepHasChangedNothing) {
  SettingsFile(m_path).set(m_key, 1);
  join(elsewhere([&] {
    SettingsFile settings(m_path);
    settings.atOnce([&] {
      settings.set(m_key, 2);
      ::_exit(0);
    });
  }));
  SettingsFile settings(m_path);
  settings.atOnce([&] { settings.set(QStringLiteral("more"), 3); });
  EXPECT_EQ(settings.object(m_key)->toInt(), 1);
}

TEST_F(SettingsFileTest, TwoProcessesThatLengthenATextAtOnceLoseNoStep) {
  constexpr int steps = 200;
  const auto lengthen = [this] {
    SettingsFile settings(m_path);
    for (int i = 0; i < steps; ++i) {
      settings.atOnce([&] {
        settings.set(m_key, settings.object(m_key).value_or(QVariant()).toString() + u'x');
      });
    }
  };
  SettingsFile(m_path).set(m_key, QString());
  const pid_t one = elsewhere(lengthen);
  const pid_t two = elsewhere(lengthen);
  join(one);
  join(two);
  EXPECT_EQ(SettingsFile(m_path).object(m_key)->toString().size(), 2 * steps);
}

TEST_F(SettingsFileTest, AStepNeedsNoFolderYet) {
  SettingsFile settings(m_path);
  settings.atOnce([&] { settings.set(m_key, 1); });
  EXPECT_EQ(SettingsFile(m_path).object(m_key)->toInt(), 1);
  EXPECT_EQ(m_files.status(m_path)->mode, 0600U);
}

TEST_F(SettingsFileTest, GarbageInTheFileIsNoObstacle) {
  for (const QByteArray &content :
       {QByteArray("\0\xff\xfe\x01garbage", 11), QByteArray("[unfinished"),
        QByteArray("====\n[[[]"), QByteArray(100000, '\n'),
        QByteArray("key=@Variant(\\0\\0\\0\\x7f\\xff)\n")}) {
    putContent(content);
    SettingsFile settings(m_path);
    EXPECT_EQ(settings.object(m_key), std::nullopt);
    settings.set(m_key, QStringLiteral("light"));
    EXPECT_EQ(settings.object(m_key), std::optional(QVariant(QStringLiteral("light"))));
    EXPECT_EQ(SettingsFile(m_path).object(m_key), std::optional(QVariant(QStringLiteral("light"))));
  }
}

TEST_F(SettingsFileTest, AFolderInTheFilesPlaceIsNoCrash) {
  putContent("x");
  SettingsFile settings(m_path + QStringLiteral("/below.ini"));
  EXPECT_EQ(settings.object(m_key), std::nullopt);
  settings.set(m_key, 1);
  EXPECT_EQ(*m_files.read(m_path), "x");
}

TEST_F(SettingsFileTest, AHandWrittenFileIsRead) {
  putContent("[General]\nmorvo.set.fleet=YES\nmorvo.set.appearance = light\n; note\n");
  const SettingsFile settings(m_path);
  EXPECT_EQ(settings.object(m_key), std::optional(QVariant(QStringLiteral("light"))));
  EXPECT_EQ(settings.object(QStringLiteral("morvo.set.fleet")),
            std::optional(QVariant(QStringLiteral("YES"))));
}

} // namespace
} // namespace morvo
