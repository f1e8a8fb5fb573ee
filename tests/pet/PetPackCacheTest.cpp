#include "pet/PetPackCache.h"

#include <QFile>
#include <QTemporaryDir>

#include <array>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace morvo {
namespace {

class PetPackCacheTest : public testing::Test {
protected:
  void write(const QString &path, const QByteArray &text) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(file.write(text), text.size());
  }

  QTemporaryDir m_folder;
  QString m_path = m_folder.filePath(QStringLiteral("manifest.json"));
  PetPackCache m_cache;
};

TEST_F(PetPackCacheTest, tenThousandLooksDoNotDecodeTenThousandTimes) {
  write(m_path, R"({"id":"a"})");
  constexpr std::uint64_t looks = 10000;
  // A file written this very moment is not trusted to be finished: only those looks may decode.
  for (std::uint64_t look = 0; look < looks; ++look) {
    ASSERT_EQ(m_cache.load(m_path)->id, QStringLiteral("a"));
  }
  EXPECT_LT(m_cache.filesDecoded(), looks / 2);
}

TEST_F(PetPackCacheTest, aContentTimeInTheFutureIsNoReasonToDecodeForEver) {
  write(m_path, R"({"id":"a"})");
  const std::array<timespec, 2> future{timespec{4102444800, 0}, timespec{4102444800, 0}};
  ASSERT_EQ(::utimensat(AT_FDCWD, QFile::encodeName(m_path).constData(), future.data(), 0), 0);
  constexpr std::uint64_t looks = 10000;
  for (std::uint64_t look = 0; look < looks; ++look) {
    ASSERT_EQ(m_cache.load(m_path)->id, QStringLiteral("a"));
  }
  EXPECT_LT(m_cache.filesDecoded(), looks / 2);
}

TEST_F(PetPackCacheTest, aRewriteOfTheSameLengthActsAtOnce) {
  for (int round = 0; round < 200; ++round) {
    const QByteArray digit = QByteArray::number(round % 10);
    write(m_path, "{\"id\":\"" + digit + "\"}");
    ASSERT_EQ(m_cache.load(m_path)->id, QString::fromLatin1(digit)) << round;
  }
}

TEST_F(PetPackCacheTest, aFileThatGoesOrBreaksIsNoLongerAPack) {
  write(m_path, R"({"id":"a"})");
  EXPECT_TRUE(m_cache.load(m_path));
  write(m_path, "{");
  EXPECT_FALSE(m_cache.load(m_path));
  ASSERT_TRUE(QFile::remove(m_path));
  EXPECT_FALSE(m_cache.load(m_path));
}

TEST_F(PetPackCacheTest, manyPacksInTurnStayRight) {
  for (int pet = 0; pet < 20; ++pet) {
    write(m_folder.filePath(QString::number(pet)), "{\"id\":\"" + QByteArray::number(pet) + "\"}");
  }
  for (int round = 0; round < 3; ++round) {
    for (int pet = 0; pet < 20; ++pet) {
      const QString name = QString::number(pet);
      ASSERT_EQ(m_cache.load(m_folder.filePath(name))->id, name);
    }
  }
}

TEST_F(PetPackCacheTest, whatIsNoRegularFileIsNotOpened) {
  ASSERT_EQ(::mkfifo(QFile::encodeName(m_path).constData(), 0600), 0);
  EXPECT_FALSE(m_cache.load(m_path));
  EXPECT_FALSE(m_cache.load(m_folder.path()));
  EXPECT_EQ(m_cache.filesDecoded(), 0U);
}

TEST_F(PetPackCacheTest, aHugeFileIsNotOpened) {
  QFile file(m_path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  ASSERT_TRUE(file.resize(PetPackCache::largestFile + 1));
  EXPECT_FALSE(m_cache.load(m_path));
  EXPECT_EQ(m_cache.filesDecoded(), 0U);
}

} // namespace
} // namespace morvo
