#include "usage/ClaudeUsageTextParser.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;

using ClaudeUsageTextParser::extractPercent;
using ClaudeUsageTextParser::firstPercent;
using ClaudeUsageTextParser::parseUsedPercents;
using ClaudeUsageTextParser::UsedPercents;
using Kind = PercentHit::Kind;

TEST(ClaudeUsageTextParserTest, WhatIsUsedStandsAndWhatIsLeftIsTakenFromTheWhole) {
  EXPECT_EQ(parseUsedPercents(u"Current session\n  ███  42% used\n\n"
                              u"Current week (all models)\n 17% left\n"_s),
            (UsedPercents{.session = 42, .weekly = 83}));
}

TEST(ClaudeUsageTextParserTest, ANumberWithoutAWordCountsWhatIsLeft) {
  EXPECT_EQ(parseUsedPercents(u"Current session 5%"_s).session, 95);
  EXPECT_EQ(parseUsedPercents(u"Current session 30% gone"_s).session, 70);
}

TEST(ClaudeUsageTextParserTest, ANumberAboveTheWholeIsNoHitAndHidesLaterOnes) {
  EXPECT_FALSE(parseUsedPercents(u"Current session 120% used, 10% used"_s).session);
  EXPECT_FALSE(firstPercent(u"999%"_s));
  EXPECT_FALSE(firstPercent(u"101% 50%"_s));
}

TEST(ClaudeUsageTextParserTest, OnlyThreeDigitsBeforeTheSignAreLookedAt) {
  EXPECT_EQ(firstPercent(u"1050% used"_s), (PercentHit{50, Kind::used}));
  EXPECT_EQ(firstPercent(u"3.5% used"_s), (PercentHit{5, Kind::used}));
  EXPECT_EQ(firstPercent(u"-7% used"_s), (PercentHit{7, Kind::used}));
}

TEST(ClaudeUsageTextParserTest, TheEndsOfTheScaleAreHits) {
  EXPECT_EQ(firstPercent(u"0% used"_s), (PercentHit{0, Kind::used}));
  EXPECT_EQ(firstPercent(u"100%left"_s), (PercentHit{100, Kind::left}));
  EXPECT_EQ(parseUsedPercents(u"Current session 100% left"_s).session, 0);
  EXPECT_EQ(parseUsedPercents(u"Current session 000%"_s).session, 100);
}

TEST(ClaudeUsageTextParserTest, TheCaseOfLettersAndTheSpaceDoNotMatter) {
  EXPECT_EQ(parseUsedPercents(u"CURRENT SESSION 42 %\n\tUSED"_s).session, 42);
  EXPECT_EQ(firstPercent(u"8 % Left"_s), (PercentHit{8, Kind::left}));
}

TEST(ClaudeUsageTextParserTest, AnotherWordBehindTheSignIsNone) {
  EXPECT_EQ(firstPercent(u"8% of it used"_s), (PercentHit{8, Kind::left}));
}

TEST(ClaudeUsageTextParserTest, APercentageFurtherThanTheReachIsNotSeen) {
  const QString label = u"Current session"_s;
  // The percentage with its word ends at the 220th character, and one behind.
  EXPECT_EQ(parseUsedPercents(label + QString(212, u'.') + u"42% used"_s).session, 42);
  EXPECT_EQ(parseUsedPercents(label + QString(217, u'.') + u"42% used"_s).session, 58);
  EXPECT_FALSE(parseUsedPercents(label + QString(218, u'.') + u"42% used"_s).session);
}

TEST(ClaudeUsageTextParserTest, TheReachIsCountedInCharactersNotInUnits) {
  const QString label = u"Current session"_s;
  const QString square = u"🟩"_s;
  EXPECT_EQ(parseUsedPercents(label + square.repeated(212) + u"42% used"_s).session, 42);
  EXPECT_FALSE(parseUsedPercents(label + square.repeated(218) + u"42% used"_s).session);
}

TEST(ClaudeUsageTextParserTest, TerminalSequencesAreNoPartOfTheText) {
  EXPECT_EQ(parseUsedPercents(u"\u001B[1mCurrent\u001B[0m session\u001B[2;3H\u001B[38;5;1m4"
                              u"\u001B[K2% \u001B[32mused"_s)
                .session,
            42);
  // A sequence that is none stays.
  EXPECT_FALSE(parseUsedPercents(u"Current\u001B[?25l session 42% used"_s).session);
}

TEST(ClaudeUsageTextParserTest, TheFirstLabelWithAPercentageTells) {
  EXPECT_EQ(parseUsedPercents(u"Current week (Opus) 9% used\nCurrent week (all models) 17% used"_s)
                .weekly,
            17);
  EXPECT_EQ(parseUsedPercents(u"Current week (all models) unknown"_s + QString(220, u' ') +
                              u"Current week 3% used"_s)
                .weekly,
            std::nullopt)
      << "the shorter label is found in the longer one first";
  EXPECT_EQ(parseUsedPercents(u"Current week: 3% used"_s).weekly, 3);
  EXPECT_EQ(extractPercent({u"a"_s, u"b"_s}, u"b 5% used a none"_s), (PercentHit{5, Kind::used}));
  EXPECT_FALSE(extractPercent({}, u"5%"_s));
}

TEST(ClaudeUsageTextParserTest, OnlyTheFirstPlaceOfALabelIsLookedAt) {
  EXPECT_FALSE(
      parseUsedPercents(u"Current session"_s + QString(300, u' ') + u"Current session 42% used"_s)
          .session);
}

TEST(ClaudeUsageTextParserTest, EachFigureMayBeMissing) {
  EXPECT_EQ(parseUsedPercents(u"Current session 1% used"_s),
            (UsedPercents{.session = 1, .weekly = std::nullopt}));
  EXPECT_EQ(parseUsedPercents(u"Current week 1% used"_s),
            (UsedPercents{.session = std::nullopt, .weekly = 1}));
  EXPECT_EQ(parseUsedPercents(u"Invalid API key · Please run /login"_s), UsedPercents{});
  EXPECT_EQ(parseUsedPercents({}), UsedPercents{});
}

TEST(ClaudeUsageTextParserTest, DigitsOfOtherScriptsAreNoNumber) {
  EXPECT_FALSE(firstPercent(u"٤٢% used"_s));
}

} // namespace
} // namespace morvo
