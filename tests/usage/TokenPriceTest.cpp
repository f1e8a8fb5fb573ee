#include "usage/TokenPrice.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

struct PriceCase {
  const char *model;
  TokenPrice price;
};

class TokenPriceOf : public testing::TestWithParam<PriceCase> {};

TEST_P(TokenPriceOf, Model) { EXPECT_EQ(TokenPrice::ofModel(GetParam().model), GetParam().price); }

INSTANTIATE_TEST_SUITE_P(
    Table, TokenPriceOf,
    testing::Values(PriceCase{"claude-opus-4-1", {15, 75, 18.75}},
                    PriceCase{"claude-sonnet-4-5", {3, 15, 3.75}},
                    PriceCase{"Claude-HAIKU", {0.8, 4, 1}},
                    PriceCase{"gpt-5-codex", {1.25, 10, 1.5}}, PriceCase{"o3-mini", {2, 8, 2.5}},
                    PriceCase{"gemini-2.5", {1.25, 5, 1.5}}, PriceCase{"qwen", {3, 15, 3.75}},
                    PriceCase{"", {3, 15, 3.75}}, PriceCase{"<synthetic>", {3, 15, 3.75}},
                    // The order of the table decides.
                    PriceCase{"sonnet-and-opus", {15, 75, 18.75}},
                    PriceCase{"haiku-sonnet", {3, 15, 3.75}}, PriceCase{"gpt-5-haiku", {0.8, 4, 1}},
                    PriceCase{"haiku-gemini", {0.8, 4, 1}}, PriceCase{"o3-gpt-5", {1.25, 10, 1.5}},
                    PriceCase{"gpt-5-o3", {1.25, 10, 1.5}}, PriceCase{"gemini-o3", {2, 8, 2.5}}));

TEST(TokenPrice, OfMixedTokensAnOddOneCostsNothing) {
  const TokenPrice price = TokenPrice::ofModel("gpt-5");
  EXPECT_DOUBLE_EQ(price.ofMixed(101), (50 * 1.25 + 50 * 10) / 1e6);
  EXPECT_DOUBLE_EQ(price.ofMixed(1), 0);
}

} // namespace
} // namespace morvo
