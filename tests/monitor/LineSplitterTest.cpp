#include "monitor/LineSplitter.h"

#include <QByteArrayList>

#include <gtest/gtest.h>

namespace morvo {
namespace {

class LineSplitterTest : public testing::Test {
protected:
  bool feed(const QByteArray &chunk) {
    return m_splitter.feed(chunk, [this](const QByteArray &line) {
      // The bytes live only during the call.
      m_lines << QByteArray(line.constData(), line.size());
    });
  }

  LineSplitter m_splitter;
  QByteArrayList m_lines;
};

TEST_F(LineSplitterTest, CutsAtLineFeedsAndLeavesEmptyLinesOut) {
  EXPECT_TRUE(feed("a\n\n\nb\nc"));
  EXPECT_EQ(m_lines, (QByteArrayList{"a", "b"}));
  EXPECT_EQ(m_splitter.rest(), "c");
}

TEST_F(LineSplitterTest, JoinsALineAcrossChunks) {
  EXPECT_FALSE(feed("ab"));
  EXPECT_FALSE(feed("cd"));
  EXPECT_TRUE(feed("ef\ng\n"));
  EXPECT_EQ(m_lines, (QByteArrayList{"abcdef", "g"}));
  EXPECT_TRUE(m_splitter.rest().isEmpty());
}

TEST_F(LineSplitterTest, ALineFeedThatComesAloneEndsTheLine) {
  feed("ab");
  EXPECT_TRUE(feed("\n"));
  EXPECT_TRUE(feed("\n"));
  EXPECT_EQ(m_lines, QByteArrayList{"ab"});
}

TEST_F(LineSplitterTest, OtherBytesAreNoLineEnds) {
  feed(QByteArray("a\r\0b\v\n", 6));
  EXPECT_EQ(m_lines, QByteArrayList{QByteArray("a\r\0b\v", 5)});
}

TEST_F(LineSplitterTest, EveryCutOfTheSameBytesGivesTheSameLines) {
  const QByteArray whole = "one\n\ntwo three\nfour";
  for (qsizetype cut = 0; cut <= whole.size(); ++cut) {
    m_splitter = {};
    m_lines.clear();
    feed(whole.first(cut));
    feed(whole.sliced(cut));
    EXPECT_EQ(m_lines, (QByteArrayList{"one", "two three"})) << cut;
    EXPECT_EQ(m_splitter.rest(), "four") << cut;
  }
}

TEST_F(LineSplitterTest, ALineOfTheGreatestLengthPasses) {
  const QByteArray longest(LineSplitter::longestLine, 'x');
  feed(longest.first(1000));
  feed(longest.sliced(1000));
  feed("\nnext\n");
  ASSERT_EQ(m_lines.size(), 2);
  EXPECT_EQ(m_lines.first().size(), LineSplitter::longestLine);
}

TEST_F(LineSplitterTest, ALongerLineIsDroppedWholeAndTheNextOneIsSeen) {
  const QByteArray half(LineSplitter::longestLine / 2, 'x');
  feed("before\n");
  feed(half);
  feed(half);
  feed("x");
  EXPECT_TRUE(m_splitter.rest().isEmpty());
  feed("more of it");
  EXPECT_TRUE(feed("its end\nnext\n"));
  EXPECT_EQ(m_lines, (QByteArrayList{"before", "next"}));
}

TEST_F(LineSplitterTest, ALongerLineWithinOneChunkIsDroppedToo) {
  feed(QByteArray(LineSplitter::longestLine + 1, 'x') + "\nnext\n");
  EXPECT_EQ(m_lines, QByteArrayList{"next"});
}

} // namespace
} // namespace morvo
