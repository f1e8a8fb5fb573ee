#include "cloud/Quota.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

TEST(QuotaTest, WithoutARealLimitThereIsNoProgress) {
  Quota quota;
  EXPECT_FALSE(quota.conversationProgress().has_value());
  for (const int limit : {0, -1, 1000000}) {
    quota.conversationLimit = limit;
    quota.petGenLimit = limit;
    EXPECT_FALSE(quota.conversationProgress().has_value()) << limit;
    EXPECT_FALSE(quota.petGenProgress().has_value()) << limit;
  }
}

TEST(QuotaTest, WhatWasUsedCountsElseTheLimitMinusTheRest) {
  Quota quota{.conversationsRemaining = 15,
              .conversationsUsed = 4,
              .conversationLimit = 20,
              .petGensRemaining = 3,
              .petGenLimit = 4};
  EXPECT_DOUBLE_EQ(*quota.conversationProgress(), 0.2);
  EXPECT_DOUBLE_EQ(*quota.petGenProgress(), 0.25);
  quota.conversationsUsed.reset();
  EXPECT_DOUBLE_EQ(*quota.conversationProgress(), 0.25);
  quota.petGensRemaining.reset();
  EXPECT_DOUBLE_EQ(*quota.petGenProgress(), 0);
}

TEST(QuotaTest, ProgressStaysBetweenNothingAndAll) {
  Quota quota{.conversationsRemaining = 30, .conversationLimit = 20};
  EXPECT_DOUBLE_EQ(*quota.conversationProgress(), 0);
  quota.conversationsUsed = 50;
  EXPECT_DOUBLE_EQ(*quota.conversationProgress(), 1);
}

} // namespace
} // namespace morvo
