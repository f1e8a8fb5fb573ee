#include "usage/QuotaProbe.h"

#include "support/StandIns.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

ProbedQuota quota(const QString &id, double primary, std::optional<double> weekly = std::nullopt,
                  const QString &plan = {}) {
  return {.providerId = id,
          .primaryUsedPct = primary,
          .weeklyUsedPct = weekly,
          .source = u"caut"_s,
          .plan = plan};
}

/// The one record of an array of one element with these fields beside the provider.
std::optional<ProbedQuota> parsed(const QByteArray &fields) {
  const auto records = QuotaProbe::parseCautUsageJSON(R"([{"provider":"claude",)" + fields + "}]");
  EXPECT_LE(records.size(), 1U);
  return records.empty() ? std::nullopt : std::optional(records.front());
}

TEST(CautOutputTest, TheRecordsStandInAnArrayOrUnderData) {
  const QByteArray records = R"([{"provider":"claude","usage":{"primary":{"usedPercent":5}}}])";
  const std::vector expected{quota(u"claude"_s, 5)};
  EXPECT_EQ(QuotaProbe::parseCautUsageJSON(records), expected);
  EXPECT_EQ(QuotaProbe::parseCautUsageJSON(R"({"data":)" + records + "}"), expected);
}

class OddCautOutputTest : public testing::TestWithParam<QByteArray> {};

TEST_P(OddCautOutputTest, HasNoRecords) {
  EXPECT_TRUE(QuotaProbe::parseCautUsageJSON(GetParam()).empty());
}

INSTANTIATE_TEST_SUITE_P(
    Outputs, OddCautOutputTest,
    testing::Values("", "<!DOCTYPE html><html><body>502</body></html>", "null", "{}", "[", "12",
                    R"({"data":{"provider":"claude"}})", R"({"Data":[]})", "[1,null,\"claude\",[]]",
                    QByteArray(3000, '['), R"([{"usage":{"primary":{"usedPercent":5}}}])",
                    R"([{"provider":"","usage":{"primary":{"usedPercent":5}}}])",
                    R"([{"provider":7,"usage":{"primary":{"usedPercent":5}}}])",
                    R"([{"provider":"claude"}])", R"([{"provider":"claude","usage":[]}])",
                    R"([{"provider":"claude","usage":{"primary":5,"secondary":"x"}}])"));

struct Figures {
  const char *usage;
  std::optional<double> primary;
  std::optional<double> weekly;
};

class CautFiguresTest : public testing::TestWithParam<Figures> {};

TEST_P(CautFiguresTest, AreTakenFromTheFirstPlaceThatHasThem) {
  const auto record = parsed(QByteArray(R"("usage":)") + GetParam().usage);
  ASSERT_EQ(record.has_value(), GetParam().primary.has_value());
  if (record) {
    EXPECT_EQ(record->primaryUsedPct, GetParam().primary);
    EXPECT_EQ(record->weeklyUsedPct, GetParam().weekly);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Usages, CautFiguresTest,
    testing::Values(
        Figures{R"({"primary":{"usedPercent":12.5,"remainingPercent":1},
                    "secondary":{"usedPercent":30}})",
                12.5, 30.0},
        Figures{R"({"primary":{"remainingPercent":30},"secondary":{"remainingPercent":60}})", 70.0,
                40.0},
        Figures{R"({"primary":{"remainingPercent":120},"secondary":{"remainingPercent":120}})", 0.0,
                0.0},
        Figures{R"({"secondary":{"usedPercent":8}})", 8.0, 8.0},
        Figures{R"({"secondary":{"remainingPercent":8}})", std::nullopt, std::nullopt},
        Figures{R"({"primary":{"usedPercent":250},"secondary":{"usedPercent":250}})", 100.0, 100.0},
        Figures{R"({"primary":{"usedPercent":-1}})", std::nullopt, std::nullopt},
        Figures{R"({"secondary":{"usedPercent":-1}})", std::nullopt, std::nullopt},
        Figures{R"({"primary":{"usedPercent":1},"secondary":{"usedPercent":-1}})", 1.0, 0.0},
        Figures{R"({"primary":{"remainingPercent":-20}})", 100.0, std::nullopt},
        Figures{R"({"primary":{"usedPercent":"42.5"},"secondary":{"usedPercent":"1e1"}})", 42.5,
                10.0},
        Figures{R"({"primary":{"usedPercent":null,"remainingPercent":"40"}})", 60.0, std::nullopt},
        Figures{R"({"primary":{"usedPercent":true}})", std::nullopt, std::nullopt},
        Figures{R"({"primary":{"usedPercent":"inf"},"secondary":{"usedPercent":"1e999"}})", 100.0,
                100.0},
        Figures{R"({"primary":{"remainingPercent":"infinity"},)"
                R"("secondary":{"remainingPercent":"-inf"}})",
                0.0, 100.0},
        Figures{R"({"primary":{"usedPercent":1},"secondary":{"usedPercent":"-inf"}})", 1.0, 0.0},
        Figures{R"({"primary":{"usedPercent":"0x1p4"}})", 16.0, std::nullopt},
        Figures{R"({"primary":{"usedPercent":0}})", 0.0, std::nullopt}));

class NoNumberTest : public testing::TestWithParam<const char *> {};

TEST_P(NoNumberTest, IsTakenForNone) {
  EXPECT_FALSE(
      parsed(QByteArray(R"("usage":{"primary":{"usedPercent":")") + GetParam() + R"("}})"));
}

INSTANTIATE_TEST_SUITE_P(Texts, NoNumberTest,
                         testing::Values("", " 5", "\\t5", "5 ", "5%", "5,5", "12a", "nan",
                                         "-infinity", "-1e999", "5\\u0000", "--5"));

TEST(CautOutputTest, AnIntegerTextWithASignIsANumber) {
  EXPECT_EQ(parsed(R"("usage":{"primary":{"usedPercent":"+5"}})")->primaryUsedPct, 5);
}

TEST(CautOutputTest, ThePlanIsTheElementsOrTheIdentitys) {
  const QByteArray usage =
      R"("usage":{"primary":{"usedPercent":1},"identity":{"plan":"identity"}})";
  EXPECT_EQ(parsed(R"("plan":"own",)" + usage)->plan, u"own"_s);
  EXPECT_EQ(parsed(usage)->plan, u"identity"_s);
  EXPECT_EQ(parsed(R"("plan":3,)" + usage)->plan, u"identity"_s);
  EXPECT_EQ(parsed(R"("usage":{"primary":{"usedPercent":1},"identity":"x"})")->plan, QString());
}

struct Name {
  const char16_t *raw;
  const char16_t *id;
};

class ProviderNameTest : public testing::TestWithParam<Name> {};

TEST_P(ProviderNameTest, IsTheAgentsId) {
  EXPECT_EQ(QuotaProbe::normalizeProviderId(QString::fromUtf16(GetParam().raw)),
            QString::fromUtf16(GetParam().id));
}

INSTANTIATE_TEST_SUITE_P(
    Names, ProviderNameTest,
    testing::Values(Name{u"  Claude-Code\n", u"claude"}, Name{u"codex", u"codex"},
                    Name{u"OpenAI", u"codex"}, Name{u"gemini-cli", u"gemini"},
                    Name{u"Google AI", u"gemini"}, Name{u"CURSOR", u"cursor"},
                    Name{u"copilot", u"copilot"}, Name{u"GitHub", u"copilot"},
                    Name{u"qwen3", u"qwen"}, Name{u"iFlow-cli", u"iflow"},
                    Name{u"i-flow", u"iflow"}, Name{u"i-flow2", u"i-flow2"},
                    Name{u"OpenCode", u"opencode"}, Name{u"open-code", u"opencode"},
                    Name{u"my open-code", u"my open-code"}, Name{u"Kimi K2", u"kimi"},
                    Name{u"MiniMax", u"minimax"}, Name{u" Zed AI ", u"zed ai"}, Name{u"", u""},
                    Name{u"claude via openai", u"claude"}, Name{u"github cursor", u"cursor"},
                    Name{u"openai opencode", u"codex"}));

TEST(CautLiveMapTest, OfTwoRecordsOfOneAgentTheFullerStays) {
  const auto limits = QuotaProbe::cautLiveMap(QuotaProbe::parseCautUsageJSON(
      R"([{"provider":"claude-code","usage":{"primary":{"usedPercent":20}}},)"
      R"({"provider":"claude","plan":"pro","usage":{"primary":{"usedPercent":30}}},)"
      R"({"provider":"Claude","usage":{"primary":{"usedPercent":10}}}])"));
  ASSERT_EQ(limits.size(), 1);
  EXPECT_EQ(limits.value(u"claude"_s), (LiveRateLimit{.primaryPct = 30, .plan = u"pro·caut"_s}));
}

TEST(CautLiveMapTest, OfEqualsTheFirstStays) {
  const auto limits = QuotaProbe::cautLiveMap(
      {quota(u"x"_s, 5, 1.0), quota(u"x"_s, 5, 2.0), quota(u"y"_s, 0, std::nullopt, u"p"_s)});
  EXPECT_EQ(limits.value(u"x"_s),
            (LiveRateLimit{.primaryPct = 5, .weeklyPct = 1, .plan = u"caut"_s}));
  EXPECT_EQ(limits.value(u"y"_s), (LiveRateLimit{.plan = u"p·caut"_s}));
}

class CautRunTest : public test::StandIns {
protected:
  std::vector<ProbedQuota> run(const QString &script) {
    return start(script).wait().value_or(std::vector<ProbedQuota>());
  }
  test::Awaited<std::vector<ProbedQuota>> start(const QString &script) {
    return test::Awaited(QuotaProbe::runCautUsage(m_scheduler, standIn(u"caut"_s, script),
                                                  m_environment, m_stop.get_token()));
  }
  const QString m_answer =
      uR"(echo '[{"provider":"claude","usage":{"primary":{"usedPercent":5}}}]')"_s;
};

TEST_F(CautRunTest, ItsAnswerIsRead) {
  EXPECT_EQ(run(m_answer), (std::vector{quota(u"claude"_s, 5)}));
}

TEST_F(CautRunTest, ItRunsInTheRootFolderWithItsArgumentsAndReadsNothing) {
  EXPECT_TRUE(run(u"cat; pwd > %1; printf '%s|' \"$@\" >> %1"_s.arg(path(u"told"_s))).empty());
  EXPECT_EQ(written(u"told"_s), "/\nusage|--json|--provider|all|");
}

TEST_F(CautRunTest, NeitherItsErrorsNorItsExitCodeCount) {
  EXPECT_EQ(run(u"echo '[broken' >&2; "_s + m_answer + u"; exit 3"_s).size(), 1U);
  EXPECT_TRUE(run(m_answer + u" >&2"_s).empty());
}

TEST_F(CautRunTest, HtmlNothingAndAFloodAreNoFigures) {
  EXPECT_TRUE(run(u"echo '<html>502</html>'"_s).empty());
  EXPECT_TRUE(run(u"exit 1"_s).empty());
  EXPECT_TRUE(run(m_answer + u"; head -c 52428800 /dev/zero"_s).empty());
}

TEST_F(CautRunTest, AfterEightSecondsItIsEndedWithAllItStarted) {
  const auto run =
      start(u"trap '' TERM; sh -c 'echo $$ > %1; exec sleep 600' & "_s.arg(path(u"grandchild"_s)) +
            m_answer + u"; echo $$ > %1; wait"_s.arg(path(u"child"_s)));
  const pid_t child = writtenPid(u"child"_s);
  const pid_t grandchild = writtenPid(u"grandchild"_s);
  m_scheduler.advance(7999ms);
  EXPECT_FALSE(isGone(child));
  m_scheduler.advance(1ms);
  m_scheduler.advance(1s);
  const auto records = run.wait();
  ASSERT_TRUE(records);
  EXPECT_TRUE(records->empty());
  EXPECT_TRUE(becomesGone(child));
  EXPECT_TRUE(becomesGone(grandchild));
}

TEST_F(CautRunTest, AMissingCommandIsNoFigure) {
  const auto records = test::Awaited(QuotaProbe::runCautUsage(m_scheduler, u"/nonexistent/caut"_s,
                                                              m_environment, {}))
                           .wait();
  ASSERT_TRUE(records);
  EXPECT_TRUE(records->empty());
}

TEST_F(CautRunTest, OnlyTheValueOneSwitchesItOff) {
  EXPECT_TRUE(QuotaProbe::cautEnabled(Environment()));
  const auto with = [](const QString &value) {
    return QuotaProbe::cautEnabled(Environment().with(u"MORVO_DISABLE_CAUT"_s, value));
  };
  EXPECT_FALSE(with(u"1"_s));
  EXPECT_TRUE(with(u"true"_s));
  EXPECT_TRUE(with({}));
}

TEST_F(CautRunTest, IsFoundByItsVariableAndThenInThePath) {
  const QString first = standIn(u"one/caut"_s, {});
  const QString second = standIn(u"two/caut"_s, {});
  const QString named = standIn(u"other"_s, {});
  putFile(u"plain/caut"_s, "no program");
  const Environment searched =
      Environment().with(u"PATH"_s, u"/nonexistent::"_s + path(u"plain"_s) + u':' + path(u"one"_s) +
                                        u':' + path(u"two"_s));
  EXPECT_EQ(QuotaProbe::findCautBinary(searched), first);
  EXPECT_EQ(QuotaProbe::findCautBinary(searched.with(u"MORVO_CAUT_PATH"_s, named)), named);
  EXPECT_EQ(QuotaProbe::findCautBinary(searched.with(u"MORVO_CAUT_PATH"_s, path(u"plain/caut"_s))),
            first);
  EXPECT_EQ(QuotaProbe::findCautBinary(searched.with(u"MORVO_CAUT_PATH"_s, m_folder.path())),
            first);
  EXPECT_FALSE(QuotaProbe::findCautBinary(Environment().with(u"PATH"_s, {})));
}

TEST_F(CautRunTest, WithoutAPathOnlyTheUsualPlacesAreSearched) {
  EXPECT_EQ(QuotaProbe::cautFolders(Environment()), u"/usr/local/bin:/opt/homebrew/bin:/usr/bin"_s);
  EXPECT_EQ(QuotaProbe::cautFolders(Environment().with(u"PATH"_s, {})), QString());
}

} // namespace
} // namespace morvo
