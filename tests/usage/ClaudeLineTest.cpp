#include "usage/ClaudeLine.h"
#include "usage/LogTree.h"
#include "usage/MarkedLines.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::claudeReply;

std::optional<TokenEvent> eventOf(QByteArray line) {
  const auto size = static_cast<std::size_t>(line.size());
  // What stands behind the line must not matter.
  line.append(static_cast<qsizetype>(MarkedLines::padding), '"');
  ClaudeLine reader;
  return reader.event({line.constData(), size});
}

QByteArray withUsage(const QByteArray &usage, const QByteArray &rest = {}) {
  return R"({"type":"assistant","timestamp":"2026-03-10T11:30:00Z","message":{"usage":)" + usage +
         rest + "}}";
}

TEST(ClaudeLine, AddsUpWhatCountsAgainstTheQuota) {
  const auto event = eventOf(
      withUsage(R"({"input_tokens":1000,"output_tokens":200,"cache_creation_input_tokens":30,)"
                R"("cache_read_input_tokens":4})",
                R"(,"model":"claude-opus-4-1")"));
  ASSERT_TRUE(event);
  EXPECT_EQ(event->billable, 1230);
  EXPECT_EQ(event->cacheRead, 4);
  EXPECT_DOUBLE_EQ(event->cost, (1000 * 15 + 200 * 75 + 30 * 18.75) / 1e6);
  EXPECT_TRUE(event->burnable);
  EXPECT_EQ(event->ts, WallTime(std::chrono::sys_days(std::chrono::year(2026) / 3 / 10)) +
                           std::chrono::minutes(11 * 60 + 30));
}

TEST(ClaudeLine, TakesAReplyWithoutModelForSonnet) {
  const auto event = eventOf(withUsage(R"({"input_tokens":1000000})"));
  ASSERT_TRUE(event);
  EXPECT_DOUBLE_EQ(event->cost, 3);
}

TEST(ClaudeLine, FallsBackToTheFirst19CharactersOfATimeWithAFraction) {
  const auto event = eventOf(claudeReply(1, 0, "2026-03-10T11:30:00.987Z"));
  ASSERT_TRUE(event);
  EXPECT_EQ(event->ts.time_since_epoch().count() % 1000, 0);
}

TEST(ClaudeLine, MembersMayStandInAnyOrder) {
  EXPECT_TRUE(eventOf(
      R"({"message":{"model":"x","usage":{"output_tokens":5}},"timestamp":"2026-03-10T11:30:00Z",)"
      R"("type":"assistant"})"));
}

TEST(ClaudeLine, TheLastOfTwoMembersOfOneNameCounts) {
  const auto event = eventOf(withUsage(R"({"input_tokens":1})", R"(,"usage":{"output_tokens":9})"));
  ASSERT_TRUE(event);
  EXPECT_EQ(event->billable, 9);
  EXPECT_FALSE(eventOf(withUsage(R"({"input_tokens":1})", R"(,"usage":null)")));
}

TEST(ClaudeLine, HalvesOfSurrogatePairsDoNoHarm) {
  EXPECT_TRUE(eventOf(withUsage(R"({"input_tokens":1})", R"(,"content":"\ud83d","\ude00":1)")));
}

TEST(ClaudeLine, NamesMayBeWrittenWithEscapes) {
  EXPECT_TRUE(eventOf(R"({"t\u0079pe":"assist\u0061nt","timestamp":"2026-03-10T11:30:00Z",)"
                      R"("message":{"us\u0061ge":{"input_tokens":5},"x":"usage"}})"));
}

TEST(ClaudeLine, ALineMayEndWithACarriageReturn) { EXPECT_TRUE(eventOf(claudeReply(1) + '\r')); }

class ClaudeLineSkips : public testing::TestWithParam<const char *> {};

TEST_P(ClaudeLineSkips, Line) { EXPECT_FALSE(eventOf(GetParam())) << GetParam(); }

INSTANTIATE_TEST_SUITE_P(
    OtherLines, ClaudeLineSkips,
    testing::Values(
        // A user's line with the word in its text.
        R"({"type":"user","timestamp":"2026-03-10T11:30:00Z","message":{"content":"\"usage\""}})",
        R"({"type":"user","timestamp":"2026-03-10T11:30:00Z","message":{"usage":{"input_tokens":1}}})",
        R"({"type":["assistant"],"timestamp":"2026-03-10T11:30:00Z","message":{"usage":{}}})",
        R"({"timestamp":"2026-03-10T11:30:00Z","message":{"usage":{"input_tokens":1}}})",
        R"({"type":"assistant","message":{"usage":{"input_tokens":1}}})",
        R"({"type":"assistant","timestamp":1773142200,"message":{"usage":{"input_tokens":1}}})",
        R"({"type":"assistant","timestamp":"yesterday","message":{"usage":{"input_tokens":1}}})",
        R"({"type":"assistant","timestamp":"2026-03-10T11:30:00Z","usage":{"input_tokens":1}})",
        R"({"type":"assistant","timestamp":"2026-03-10T11:30:00Z","message":"usage"})",
        R"({"type":"assistant","timestamp":"2026-03-10T11:30:00Z","message":{"usage":[1]}})",
        // Cut off, or with something behind.
        R"({"type":"assistant","timestamp":"2026-03-10T11:30:00Z","message":{"usage":{"input_tokens":1}})",
        R"({"type":"assistant","timestamp":"2026-03-10T11:30:00Z","message":{"usage":{"input_tokens":1)",
        R"({"type":"assistant","timestamp":"2026-03-10T11:30:00Z","message":{"usage":{}}} {})",
        R"(["usage"])", R"("usage")", "\"usage\"{", "{", "}", "nonsense \"usage\"", ""));

struct CountCase {
  const char *text;
  std::int64_t count;
};

class ClaudeLineCount : public testing::TestWithParam<CountCase> {};

TEST_P(ClaudeLineCount, IsReadAsAWholeNumber) {
  const auto event = eventOf(withUsage("{\"input_tokens\":" + QByteArray(GetParam().text) + "}"));
  ASSERT_TRUE(event);
  EXPECT_EQ(event->billable, GetParam().count);
}

constexpr auto most = std::numeric_limits<std::int64_t>::max();
constexpr auto least = std::numeric_limits<std::int64_t>::min();

INSTANTIATE_TEST_SUITE_P(
    Counts, ClaudeLineCount,
    testing::Values(CountCase{"5", 5}, CountCase{" 5 ", 5}, CountCase{"-5", -5},
                    CountCase{"5.0", 5}, CountCase{"5.5", 0}, CountCase{"\"5\"", 0},
                    CountCase{"true", 0}, CountCase{"null", 0}, CountCase{"{}", 0},
                    CountCase{"[5]", 0}, CountCase{"9223372036854775807", most},
                    CountCase{"9223372036854775808", most}, CountCase{"1e30", most},
                    CountCase{"-99999999999999999999", least}, CountCase{"1e999", 0}));

TEST(ClaudeLine, SumsEndAtTheLimits) {
  const auto event = eventOf(
      withUsage(R"({"input_tokens":9223372036854775807,"output_tokens":9223372036854775807})"));
  ASSERT_TRUE(event);
  EXPECT_EQ(event->billable, most);
  EXPECT_GT(event->cost, 0);
}

TEST(ClaudeLine, DeepNestingDoesNoHarm) {
  const int depth = 100000;
  EXPECT_TRUE(eventOf(withUsage(R"({"input_tokens":1})",
                                R"(,"x":)" + QByteArray(depth, '[') + QByteArray(depth, ']'))));
}

TEST(ClaudeLine, BytesThatAreNoTextMakeALineUseless) {
  EXPECT_FALSE(eventOf(withUsage(R"({"input_tokens":1})", ",\"x\":\"\xff\xfe\"")));
  EXPECT_FALSE(eventOf(withUsage(R"({"input_tokens":1})", QByteArray(",\"x\":\"\0\"", 8))));
}

} // namespace
} // namespace morvo
