#include "panels/AttentionFormat.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using Tone = PanelTint::Tone;

std::vector<AttentionItem> items(std::initializer_list<AttentionKind> kinds) {
  std::vector<AttentionItem> made;
  for (const AttentionKind kind : kinds) {
    made.push_back({.kind = kind});
  }
  return made;
}

TEST(AttentionFormatTest, AQuietStateAloneShowsNoCard) {
  EXPECT_FALSE(AttentionFormat::isShown({}));
  EXPECT_FALSE(AttentionFormat::isShown(items({AttentionKind::calm})));
  EXPECT_FALSE(AttentionFormat::isShown(
      items({AttentionKind::running, AttentionKind::connectorGap, AttentionKind::calm})));
}

TEST(AttentionFormatTest, WhatCallsForTheUserShowsTheCard) {
  EXPECT_TRUE(AttentionFormat::isShown(items({AttentionKind::needsConfirm})));
  EXPECT_TRUE(AttentionFormat::isShown(items({AttentionKind::agentDone})));
  EXPECT_TRUE(
      AttentionFormat::isShown(items({AttentionKind::running, AttentionKind::quotaPressure})));
}

TEST(AttentionFormatTest, TheCardLeavesOutWhatOnlyRunsOrIsNotConnected) {
  const auto listed = AttentionFormat::listed(
      items({AttentionKind::needsConfirm, AttentionKind::agentDone, AttentionKind::quotaPressure,
             AttentionKind::running, AttentionKind::connectorGap, AttentionKind::calm}));
  EXPECT_EQ(listed, items({AttentionKind::needsConfirm, AttentionKind::agentDone,
                           AttentionKind::quotaPressure, AttentionKind::calm}));
}

class AttentionAccent : public testing::TestWithParam<std::pair<AttentionKind, PanelTint>> {};

TEST_P(AttentionAccent, ComesFromTheFirstItem) {
  const auto [kind, tint] = GetParam();
  EXPECT_EQ(AttentionFormat::accent(items({kind, AttentionKind::calm})), tint);
}

INSTANTIATE_TEST_SUITE_P(
    AttentionFormatTest, AttentionAccent,
    testing::Values(std::pair{AttentionKind::needsConfirm, PanelTint{Tone::coral, 1}},
                    std::pair{AttentionKind::agentDone, PanelTint{Tone::theme, 1}},
                    std::pair{AttentionKind::quotaPressure, PanelTint{Tone::orange, 1}},
                    std::pair{AttentionKind::running, PanelTint{Tone::foam, 0.7}},
                    std::pair{AttentionKind::connectorGap, PanelTint{Tone::yellow, 1}},
                    std::pair{AttentionKind::calm, PanelTint{Tone::foam, 0.45}}));

TEST(AttentionFormatTest, WithoutItemsTheAccentIsFaint) {
  EXPECT_EQ(AttentionFormat::accent(std::vector<AttentionItem>()), (PanelTint{Tone::foam, 0.5}));
}

} // namespace
} // namespace morvo
