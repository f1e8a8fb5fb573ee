#include "usage/MarkedLines.h"
#include "usage/LogTree.h"

#include <QByteArrayList>

#include <gtest/gtest.h>

namespace morvo {
namespace {

struct Reading {
  QByteArrayList lines;
  QByteArrayList unfinished;
  std::optional<MarkedLines::Place> place;
};

Reading readingOf(const QByteArray &content, std::size_t block, MarkedLines::Place from = {}) {
  const test::LogTree tree;
  tree.write(QStringLiteral("log"), content);
  const auto log = OpenLog::at(tree.path(QStringLiteral("log")).toStdString());
  Reading reading;
  MarkedLines lines("mark", block);
  reading.place =
      lines.read(*log, from,
                 [&reading](std::string_view line, bool isWhole) {
                   (isWhole ? reading.lines : reading.unfinished)
                       .append(QByteArray(line.data(), static_cast<qsizetype>(line.size())));
                 },
                 {});
  return reading;
}

class MarkedLinesCut : public testing::TestWithParam<std::size_t> {};

TEST_P(MarkedLinesCut, FindsTheLinesWhereverABlockEnds) {
  const QByteArray content("a\nmark one\n\nno\ntwo mark mark\nx\0mark\n", 36);
  const auto reading = readingOf(content, GetParam());
  EXPECT_EQ(reading.lines, (QByteArrayList{"mark one", "two mark mark", QByteArray("x\0mark", 6)}));
  EXPECT_TRUE(reading.unfinished.isEmpty());
  EXPECT_EQ(reading.place, (MarkedLines::Place{.offset = content.size()}));
}

TEST_P(MarkedLinesCut, ALastLineWithoutLineFeedMayStillGrow) {
  const auto reading = readingOf("mark one\nmark tw", GetParam());
  EXPECT_EQ(reading.lines, QByteArrayList{"mark one"});
  EXPECT_EQ(reading.unfinished, QByteArrayList{"mark tw"});
  EXPECT_EQ(reading.place, (MarkedLines::Place{.offset = 9}));
}

TEST_P(MarkedLinesCut, AMarkerDoesNotReachOverALineEnd) {
  EXPECT_TRUE(readingOf("ma\nrk\nmar", GetParam()).lines.isEmpty());
}

TEST_P(MarkedLinesCut, AFileOfNothingHasNoLines) {
  EXPECT_EQ(readingOf({}, GetParam()).place, MarkedLines::Place());
}

TEST_P(MarkedLinesCut, GoesOnInALineThatIsPassedOver) {
  const auto reading =
      readingOf("xxmark\nmark two\n", GetParam(), {.offset = 2, .isInLongLine = true});
  EXPECT_EQ(reading.lines, QByteArrayList{"mark two"});
}

INSTANTIATE_TEST_SUITE_P(Blocks, MarkedLinesCut, testing::Values(1, 2, 3, 5, 8, 13, 4096));

TEST(MarkedLines, PassesOverALineThatIsTooLong) {
  const auto tooLong =
      "mark" + QByteArray(static_cast<qsizetype>(MarkedLines::longestLine) - 3, 'x');
  const auto longest =
      "mark" + QByteArray(static_cast<qsizetype>(MarkedLines::longestLine) - 4, 'x');
  for (const std::size_t block : {std::size_t{65536}, std::size_t{100003}, std::size_t{8} << 20U}) {
    const auto reading = readingOf(tooLong + '\n' + longest + "\nmark end\n", block);
    ASSERT_EQ(reading.lines.size(), 2) << block;
    EXPECT_EQ(reading.lines[0], longest);
    EXPECT_EQ(reading.lines[1], "mark end");
  }
}

TEST(MarkedLines, KnowsThatItStandsInALineThatIsTooLong) {
  const QByteArray tooLong(static_cast<qsizetype>(MarkedLines::longestLine) + 1, 'x');
  const auto reading = readingOf("mark\n" + tooLong, MarkedLines::standardBlock);
  EXPECT_EQ(reading.place,
            (MarkedLines::Place{.offset = 5 + tooLong.size(), .isInLongLine = true}));
  EXPECT_TRUE(reading.unfinished.isEmpty());
}

TEST(MarkedLines, StopsWhenItIsTold) {
  const test::LogTree tree;
  tree.write(QStringLiteral("log"), "mark\n");
  const auto log = OpenLog::at(tree.path(QStringLiteral("log")).toStdString());
  std::stop_source stop;
  stop.request_stop();
  MarkedLines lines("mark");
  EXPECT_FALSE(lines.read(*log, {}, [](std::string_view, bool) { FAIL(); }, stop.get_token()));
}

} // namespace
} // namespace morvo
