#include "usage/BackwardLines.h"

#include "base/RandomSource.h"

#include <QTemporaryFile>

#include <algorithm>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace morvo {
namespace {

const QByteArray marker = QByteArrayLiteral("MARK");

class BackwardLinesTest : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(m_file.open()); }
  void fill(const QByteArray &content) {
    ASSERT_TRUE(m_file.resize(0) && m_file.seek(0));
    ASSERT_EQ(m_file.write(content), content.size());
    ASSERT_TRUE(m_file.flush());
    m_size = content.size();
  }
  QByteArrayList read(qsizetype block, const std::stop_token &stop = {},
                      qsizetype longest = LogLine::longest) {
    QByteArrayList found;
    m_isWhole = BackwardLines(m_file.handle(), m_size, marker, block, longest)
                    .each(
                        [&found](const QByteArray &line) {
                          found.append(line);
                          return false;
                        },
                        stop);
    return found;
  }

  QTemporaryFile m_file;
  qint64 m_size = 0;
  /// Whether the last reading came to its end.
  bool m_isWhole = false;
};

TEST_F(BackwardLinesTest, GivesTheLinesWithTheMarkerFromTheLastToTheFirst) {
  fill("MARK 1\nother\nx MARK 2 MARK y\n\nMARK 3");
  EXPECT_EQ(read(1024), (QByteArrayList{"MARK 3", "x MARK 2 MARK y", "MARK 1"}));
}

TEST_F(BackwardLinesTest, StopsWhenItsReaderIsSatisfied) {
  fill("MARK 1\nMARK 2\nMARK 3\n");
  QByteArrayList found;
  EXPECT_TRUE(BackwardLines(m_file.handle(), m_size, marker, 4)
                  .each(
                      [&found](const QByteArray &line) {
                        found.append(line);
                        return found.size() == 2;
                      },
                      {}));
  EXPECT_EQ(found, (QByteArrayList{"MARK 3", "MARK 2"}));
}

TEST_F(BackwardLinesTest, AnEmptyFileHasNoLines) {
  fill({});
  EXPECT_TRUE(read(16).isEmpty());
  EXPECT_TRUE(m_isWhole);
}

TEST_F(BackwardLinesTest, AFileThatHasBecomeShorterGivesNothing) {
  fill("MARK 1\n");
  m_size = 4096;
  EXPECT_TRUE(read(64).isEmpty());
  EXPECT_FALSE(m_isWhole);
}

TEST_F(BackwardLinesTest, AStopEndsTheReading) {
  fill("MARK 1\n");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_TRUE(read(64, stop.get_token()).isEmpty());
  EXPECT_FALSE(m_isWhole);
}

TEST_F(BackwardLinesTest, WhatCannotBeReadIsAFailure) {
  fill("MARK 1\n");
  const int writing = ::open(QFile::encodeName(m_file.fileName()).constData(), O_WRONLY);
  ASSERT_GE(writing, 0);
  BackwardLines lines(writing, m_size, marker);
  EXPECT_FALSE(lines.each([](const QByteArray &) { return true; }, {}));
  ::close(writing);
}

TEST_F(BackwardLinesTest, TheLongestLineIsGivenAndALongerOneIsPassedOver) {
  fill("MARK 1\nMARK5678\nMARK 2\nMARK56789\nMARK 3\nMARK56789abcdefghijklmnop");
  for (const qsizetype block : {1, 2, 3, 5, 16, 1024}) {
    EXPECT_EQ(read(block, {}, 8), (QByteArrayList{"MARK 3", "MARK 2", "MARK5678", "MARK 1"}))
        << block;
  }
}

TEST_F(BackwardLinesTest, AFileOfOneLineThatIsTooLongHasNothing) {
  fill("MARK56789");
  EXPECT_TRUE(read(2, {}, 8).isEmpty());
  EXPECT_TRUE(m_isWhole);
}

TEST_F(BackwardLinesTest, ALineOf64MegabytesIsNotTooLong) {
  const QByteArray longest = marker + QByteArray((qsizetype{64} << 20U) - 4, 'x');
  fill("MARK 1\n" + longest + "\nMARK 2\n");
  const auto found = read(BackwardLines::standardBlock);
  ASSERT_EQ(found.size(), 3);
  EXPECT_TRUE(found[1] == longest);
  EXPECT_EQ(found[2], "MARK 1");
}

TEST_F(BackwardLinesTest, AnyBlockSizeGivesWhatTheWholeFileHolds) {
  SeededRandomSource random(11);
  const QByteArrayList pieces{"MARK", "MA", "RK", "\n", "\n", "x", QByteArray("\0", 1)};
  for (int round = 0; round < 400; ++round) {
    QByteArray content;
    for (std::size_t count = random.below(60); count > 0; --count) {
      content += pieces.at(static_cast<qsizetype>(random.below(pieces.size())));
    }
    fill(content);
    QByteArrayList expected = content.split('\n');
    expected.removeIf([](const QByteArray &line) { return !line.contains(marker); });
    std::ranges::reverse(expected);
    for (const qsizetype block : {1, 2, 3, 5, 16, 1024}) {
      ASSERT_EQ(read(block), expected) << content.toStdString() << " in blocks of " << block;
    }
  }
}

} // namespace
} // namespace morvo
