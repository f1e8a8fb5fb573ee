#include "base/SystemFileLayer.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace morvo {
namespace {

class SystemFileLayerTest : public testing::Test {
protected:
  [[nodiscard]] int errorOf(const QString &path) {
    const auto content = m_files.read(path);
    return content ? 0 : content.error().code;
  }
  [[nodiscard]] static QByteArray encoded(const QString &path) { return QFile::encodeName(path); }
  /// A file of that size without content on the disk.
  void makeHole(std::uint64_t size) const {
    QFile file(m_path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(::truncate(encoded(m_path).constData(), static_cast<off_t>(size)), 0);
  }

  QTemporaryDir m_folder;
  QString m_path = m_folder.filePath(QStringLiteral("f"));
  SystemFileLayer m_files;
};

TEST_F(SystemFileLayerTest, ReadsAFileThroughALink) {
  QFile file(m_path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.write(QByteArray(200'000, 'x'));
  file.close();
  const QString link = m_folder.filePath(QStringLiteral("link"));
  ASSERT_TRUE(QFile::link(m_path, link));
  EXPECT_EQ(m_files.read(link), QByteArray(200'000, 'x'));
}

TEST_F(SystemFileLayerTest, ReadsFilesOfTheSystemThatTellNoSize) {
  EXPECT_FALSE(m_files.read(QStringLiteral("/proc/self/stat")).value_or(QByteArray()).isEmpty());
}

TEST_F(SystemFileLayerTest, AMissingFileIsTold) { EXPECT_EQ(errorOf(m_path), ENOENT); }

TEST_F(SystemFileLayerTest, AFolderIsNotRead) { EXPECT_EQ(errorOf(m_folder.path()), EISDIR); }

TEST_F(SystemFileLayerTest, APipeIsNeitherReadNorWaitedFor) {
  ASSERT_EQ(::mkfifo(encoded(m_path).constData(), 0600), 0);
  EXPECT_EQ(errorOf(m_path), EINVAL);
}

TEST_F(SystemFileLayerTest, ADeviceWithoutAnEndIsNotRead) {
  ASSERT_TRUE(QFile::link(QStringLiteral("/dev/zero"), m_path));
  EXPECT_EQ(errorOf(m_path), EINVAL);
}

TEST_F(SystemFileLayerTest, AFileBeyondTheLimitIsNotRead) {
  makeHole(FileLayer::largestRead + 1);
  EXPECT_EQ(errorOf(m_path), EFBIG);
}

TEST_F(SystemFileLayerTest, AFileOfExactlyTheLimitIsRead) {
  makeHole(FileLayer::largestRead);
  const auto content = m_files.read(m_path);
  ASSERT_TRUE(content.has_value());
  EXPECT_EQ(static_cast<std::uint64_t>(content->size()), FileLayer::largestRead);
}

} // namespace
} // namespace morvo
