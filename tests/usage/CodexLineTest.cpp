#include "usage/CodexLine.h"
#include "usage/LogTree.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using CodexLine::totals;
using CodexLine::Totals;

TEST(CodexLine, TellsTheTotals) {
  EXPECT_EQ(totals(test::codexTotals(100, 40)), (Totals{.total = 100, .cached = 40}));
}

TEST(CodexLine, WhatIsAbsentCountsNothing) {
  EXPECT_EQ(totals(R"({"payload":{"type":"token_count","info":{"total_token_usage":{}}}})"),
            Totals());
}

TEST(CodexLine, HugeCountsEndAtTheLimits) {
  EXPECT_EQ(totals(R"({"payload":{"type":"token_count","info":{"total_token_usage":)"
                   R"({"total_tokens":1e30,"cached_input_tokens":-1e30}}}})"),
            (Totals{.total = std::numeric_limits<std::int64_t>::max(),
                    .cached = std::numeric_limits<std::int64_t>::min()}));
}

class CodexLineSkips : public testing::TestWithParam<const char *> {};

TEST_P(CodexLineSkips, Line) { EXPECT_FALSE(totals(GetParam())) << GetParam(); }

INSTANTIATE_TEST_SUITE_P(
    OtherLines, CodexLineSkips,
    testing::Values(
        R"({"payload":{"type":"token_count","info":null}})",
        R"({"payload":{"type":"token_count","info":{"total_token_usage":7}}})",
        R"({"payload":{"type":"other","info":{"total_token_usage":{}}},"x":"token_count"})",
        R"({"type":"token_count","info":{"total_token_usage":{}}})",
        R"({"payload":{"type":"token_count","info":{"total_token_usage":{"total_tokens":5)",
        R"(["token_count"])", "token_count", ""));

} // namespace
} // namespace morvo
