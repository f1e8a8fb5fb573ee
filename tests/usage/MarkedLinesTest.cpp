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

Reading readingOf(const QByteArray &content, std::size_t block, MarkedLines::Place from = {},
                  std::size_t longest = LogLine::longest) {
  const test::LogTree tree;
  tree.write(QStringLiteral("log"), content);
  const auto log = OpenLog::at(tree.path(QStringLiteral("log")).toStdString());
  Reading reading;
  MarkedLines lines("mark", block, longest);
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

TEST_P(MarkedLinesCut, PassesOverALineThatIsTooLong) {
  const auto reading = readingOf("mark12345\nmark1234\nmark123456789\nmark\n", GetParam(), {}, 8);
  EXPECT_EQ(reading.lines, (QByteArrayList{"mark1234", "mark"}));
}

INSTANTIATE_TEST_SUITE_P(Blocks, MarkedLinesCut, testing::Values(1, 2, 3, 5, 8, 13, 4096));

TEST(MarkedLines, KnowsThatItStandsInALineThatIsTooLong) {
  const auto reading = readingOf("mark\nmark123456", 4, {}, 8);
  EXPECT_EQ(reading.place, (MarkedLines::Place{.offset = 15, .isInLongLine = true}));
  EXPECT_TRUE(reading.unfinished.isEmpty());
}

TEST(MarkedLines, ALineOf64MegabytesIsNotTooLong) {
  const QByteArray longest = "mark" + QByteArray((qsizetype{64} << 20U) - 4, 'x');
  const auto reading = readingOf(longest + "\nmark\n", MarkedLines::standardBlock);
  ASSERT_EQ(reading.lines.size(), 2);
  EXPECT_TRUE(reading.lines[0] == longest);
  EXPECT_EQ(reading.lines[1], "mark");
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
