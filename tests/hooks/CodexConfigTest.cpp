#include "monitor/CodexConfig.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

struct Config {
  QByteArray before;
  bool enabled;
  QByteArray after;
  bool safe = true;
};

class CodexConfigTest : public testing::TestWithParam<Config> {};

TEST_P(CodexConfigTest, ReadsAndSetsTheSwitch) {
  const Config &config = GetParam();
  EXPECT_EQ(CodexConfig::hooksFeatureEnabled(config.before), config.enabled);
  const QByteArray after = CodexConfig::withHooksFeatureEnabled(config.before);
  EXPECT_EQ(after, config.after);
  EXPECT_TRUE(CodexConfig::hooksFeatureEnabled(after));
  EXPECT_EQ(CodexConfig::withHooksFeatureEnabled(after), after);
  EXPECT_EQ(CodexConfig::isSafeChange(config.before, after), config.safe);
}

INSTANTIATE_TEST_SUITE_P(
    SectionMissing, CodexConfigTest,
    testing::Values(Config{"", false, "\n[features]\nhooks = true"},
                    Config{"model = \"x\"", false, "model = \"x\"\n\n[features]\nhooks = true"},
                    Config{"model = \"x\"\n", false, "model = \"x\"\n\n[features]\nhooks = true"},
                    Config{"model = \"x\"\n\n", false,
                           "model = \"x\"\n\n\n[features]\nhooks = true"},
                    Config{"[other]\nhooks = true\n", false,
                           "[other]\nhooks = true\n\n[features]\nhooks = true"},
                    Config{"# [features]\n# hooks = true\n", false,
                           "# [features]\n# hooks = true\n\n[features]\nhooks = true"},
                    Config{"[[features]]\nhooks = true\n", false,
                           "[[features]]\nhooks = true\n\n[features]\nhooks = true", false}));

INSTANTIATE_TEST_SUITE_P(
    SectionThere, CodexConfigTest,
    testing::Values(
        Config{"[features]", false, "[features]\nhooks = true"},
        Config{"[features]\n", false, "[features]\nhooks = true\n"},
        Config{"  [features]  \nweb = 1\n", false, "  [features]  \nhooks = true\nweb = 1\n"},
        Config{"[features] # mine\nweb = 1", false, "[features] # mine\nhooks = true\nweb = 1"},
        Config{"[features]\nweb = 1\n\n[z]\nhooks = false\n", false,
               "[features]\nhooks = true\nweb = 1\n\n[z]\nhooks = false\n"},
        Config{"[features]\r\nweb = 1\r\n", false, "[features]\r\nhooks = true\nweb = 1\r\n"},
        Config{"[features]\nhooksx = true\n", false, "[features]\nhooks = true\nhooksx = true\n"}));

INSTANTIATE_TEST_SUITE_P(
    LineThere, CodexConfigTest,
    testing::Values(Config{"[features]\nhooks = true\n", true, "[features]\nhooks = true\n"},
                    Config{"[features]\nhooks=true # on\n", true, "[features]\nhooks=true # on\n"},
                    Config{"[features]\r\nhooks = true\r\n", true,
                           "[features]\r\nhooks = true\r\n"},
                    Config{"[features]\n  hooks  =  true", true, "[features]\n  hooks  =  true"},
                    Config{"[features]\na = 1\n  hooks = false # because\nb = 2\n", false,
                           "[features]\na = 1\nhooks = true\nb = 2\n"},
                    Config{"[features]\n# hooks = false\nhooks = false", false,
                           "[features]\n# hooks = false\nhooks = true"},
                    Config{"[features]\nhooks = \"true\"\n", false, "[features]\nhooks = true\n"},
                    Config{"[a]\n[features]\nhooks = false\n[b]", false,
                           "[a]\n[features]\nhooks = true\n[b]"}));

// What a line scanner cannot see: Codex would refuse the changed file, or the switch would stay
// off, so the change is not to be made.
INSTANTIATE_TEST_SUITE_P(
    OtherSpellings, CodexConfigTest,
    testing::Values(Config{"[ features ]\nhooks = true\n", false,
                           "[ features ]\nhooks = true\n\n[features]\nhooks = true", false},
                    Config{"features.hooks = true\n", false,
                           "features.hooks = true\n\n[features]\nhooks = true", false},
                    Config{"features = { hooks = true }\n", false,
                           "features = { hooks = true }\n\n[features]\nhooks = true", false},
                    Config{"[\"features\"]\nweb = 1\n", false,
                           "[\"features\"]\nweb = 1\n\n[features]\nhooks = true", false},
                    Config{"[features]\n\"hooks\" = false\n", false,
                           "[features]\nhooks = true\n\"hooks\" = false\n", false},
                    Config{"text = \"\"\"\n[features]\n\"\"\"\n", false,
                           "text = \"\"\"\n[features]\nhooks = true\n\"\"\"\n", false}));

TEST(CodexConfigSafetyTest, ATextThatWasNoTomlCannotBeSpoiled) {
  EXPECT_TRUE(CodexConfig::isSafeChange("= broken", "= broken\n\n[features]\nhooks = true"));
}

class SpoiledTest : public testing::TestWithParam<QByteArray> {};

TEST_P(SpoiledTest, AChangeOfAnythingButTheSwitchIsNotSafe) {
  const QByteArray after = CodexConfig::withHooksFeatureEnabled(GetParam());
  EXPECT_NE(after, GetParam());
  EXPECT_FALSE(CodexConfig::isSafeChange(GetParam(), after)) << after.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Texts, SpoiledTest,
    testing::Values("text = \"\"\"\n[features]\nhooks = false\n\"\"\"\n[features]\nhooks = true\n",
                    "features.hooks = true\ntext = \"\"\"\n[features]\nhooks = false\n\"\"\"\n",
                    "features.hooks = true\ntext = \"\"\"\n[features]\n\"\"\"\n",
                    "features = 1\n"));

TEST(CodexConfigSafetyTest, OtherValuesOfTheSwitchAreReplaced) {
  for (const char *value : {"false", "1", "\"true\"", "[]", "{ a = 1 }"}) {
    const QByteArray before = QByteArray("a.b = 1\n[features]\nhooks = ") + value + "\nz = 2\n";
    EXPECT_TRUE(CodexConfig::isSafeChange(before, CodexConfig::withHooksFeatureEnabled(before)))
        << value;
  }
}

TEST(CodexConfigSafetyTest, TextsBeyondTheLimitsAreNotTouched) {
  const auto isSafe = [](const QByteArray &before) {
    return CodexConfig::isSafeChange(before, CodexConfig::withHooksFeatureEnabled(before));
  };
  const auto key = [](qsizetype dots) { return QByteArray("a.").repeated(dots) + "a = 1\n"; };
  EXPECT_TRUE(isSafe(key(CodexConfig::mostDotsInLine)));
  EXPECT_FALSE(isSafe(key(CodexConfig::mostDotsInLine + 1)));
  EXPECT_FALSE(isSafe(key(100'000)));
  const QByteArray comment("# a line of comment\n");
  EXPECT_TRUE(isSafe(comment.repeated(50'000)));
  EXPECT_FALSE(isSafe(comment.repeated(60'000)));
  EXPECT_EQ(CodexConfig::byToml(key(100'000)), CodexConfig::Switch::notUnderstood);
}

TEST(CodexConfigSafetyTest, TomlTellsTheSwitchWhateverItsSpelling) {
  using CodexConfig::Switch;
  EXPECT_EQ(CodexConfig::byToml("features = { hooks = true }"), Switch::on);
  EXPECT_EQ(CodexConfig::byToml("[ features ]\n\"hooks\" = true"), Switch::on);
  EXPECT_EQ(CodexConfig::byToml("[features]\nhooks = 1"), Switch::off);
  EXPECT_EQ(CodexConfig::byToml("features = true"), Switch::off);
  EXPECT_EQ(CodexConfig::byToml(""), Switch::off);
  EXPECT_EQ(CodexConfig::byToml("[features]\nhooks = true\nhooks = true"), Switch::notUnderstood);
}

TEST(CodexConfigSafetyTest, AnUnchangedTextIsAlwaysSafe) {
  EXPECT_TRUE(CodexConfig::isSafeChange("a = 1", "a = 1"));
}

TEST(CodexConfigSafetyTest, OnlyTheFirstHooksLineOfASectionCounts) {
  EXPECT_FALSE(CodexConfig::hooksFeatureEnabled("[features]\nhooks = false\nhooks = true\n"));
}

TEST(CodexConfigSafetyTest, BytesOutsideTheChangeSurviveEvenWhenTheyAreNoUtf8) {
  EXPECT_EQ(CodexConfig::withHooksFeatureEnabled("# caf\xE9\n[features]\n"),
            "# caf\xE9\n[features]\nhooks = true\n");
}

} // namespace
} // namespace morvo
