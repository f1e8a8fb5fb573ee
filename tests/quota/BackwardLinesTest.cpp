#include "usage/BackwardLines.h"

#include "base/RandomSource.h"

#include <QTemporaryFile>

#include <algorithm>
#include <gtest/gtest.h>

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
  QByteArrayList read(qsizetype block, const std::stop_token &stop = {}) {
    QByteArrayList found;
    BackwardLines(m_file.handle(), m_size, marker, block)
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
};

TEST_F(BackwardLinesTest, GivesTheLinesWithTheMarkerFromTheLastToTheFirst) {
  fill("MARK 1\nother\nx MARK 2 MARK y\n\nMARK 3");
  EXPECT_EQ(read(1024), (QByteArrayList{"MARK 3", "x MARK 2 MARK y", "MARK 1"}));
}

TEST_F(BackwardLinesTest, StopsWhenItsReaderIsSatisfied) {
  fill("MARK 1\nMARK 2\nMARK 3\n");
  QByteArrayList found;
  BackwardLines(m_file.handle(), m_size, marker, 4)
      .each(
          [&found](const QByteArray &line) {
            found.append(line);
            return found.size() == 2;
          },
          {});
  EXPECT_EQ(found, (QByteArrayList{"MARK 3", "MARK 2"}));
}

TEST_F(BackwardLinesTest, AnEmptyFileHasNoLines) {
  fill({});
  EXPECT_TRUE(read(16).isEmpty());
}

TEST_F(BackwardLinesTest, AFileThatHasBecomeShorterGivesNothing) {
  fill("MARK 1\n");
  m_size = 4096;
  EXPECT_TRUE(read(64).isEmpty());
}

TEST_F(BackwardLinesTest, AStopEndsTheReading) {
  fill("MARK 1\n");
  std::stop_source stop;
  stop.request_stop();
  EXPECT_TRUE(read(64, stop.get_token()).isEmpty());
}

TEST_F(BackwardLinesTest, TheLongestLineIsGivenAndALongerOneIsPassedOver) {
  const QByteArray longest = marker + QByteArray(BackwardLines::longestLine - 4, 'x');
  fill("MARK 1\n" + longest + "\nMARK 2\n" + longest + "x\nMARK 3\n" + longest + "xx");
  EXPECT_EQ(read(BackwardLines::standardBlock),
            (QByteArrayList{"MARK 3", "MARK 2", longest, "MARK 1"}));
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
