#include "usage/ProbeCLI.h"

#include "support/StandIns.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class ProbeCLITest : public test::StandIns {
protected:
  test::Awaited<std::optional<QString>> start(const QString &script) {
    return test::Awaited(ProbeCLI::run(m_scheduler,
                                       {.executable = standIn(u"program"_s, script),
                                        .arguments = {u"/usage"_s, QString()},
                                        .timeout = 18s,
                                        .environment = m_environment},
                                       m_stop.get_token()));
  }
  std::optional<QString> run(const QString &script) {
    return start(script).wait().value_or(std::nullopt);
  }
  [[nodiscard]] std::optional<QString> located(const Environment &environment) const {
    return ProbeCLI::locate(u"claude"_s, environment, HomeFolder{m_folder.path()});
  }
};

TEST_F(ProbeCLITest, OnlyTheValueOneSwitchesTheCommandsOff) {
  EXPECT_TRUE(ProbeCLI::enabled(Environment()));
  const auto with = [](const QString &value) {
    return ProbeCLI::enabled(Environment().with(u"MORVO_DISABLE_CLI_PROBES"_s, value));
  };
  EXPECT_FALSE(with(u"1"_s));
  EXPECT_TRUE(with(u"0"_s));
  EXPECT_TRUE(with(u"yes"_s));
}

TEST_F(ProbeCLITest, ACommandIsFoundInTheFirstFolderThatHasIt) {
  const QString first = standIn(u"one/claude"_s, {});
  standIn(u"two/claude"_s, {});
  putFile(u"plain/claude"_s, "no program");
  ASSERT_TRUE(QDir().mkpath(path(u"folder/claude"_s)));
  const auto folders = QStringList{
      u"/nonexistent"_s, {}, path(u"plain"_s), path(u"folder"_s), path(u"one"_s), path(u"two"_s)};
  EXPECT_EQ(located(Environment().with(u"PATH"_s, folders.join(u':'))), first);
}

TEST_F(ProbeCLITest, TheCommandsVariableComesFirst) {
  standIn(u"one/claude"_s, {});
  const QString named = standIn(u"named"_s, {});
  putFile(u"plain"_s, "no program");
  const Environment searched = Environment().with(u"PATH"_s, path(u"one"_s));
  EXPECT_EQ(located(searched.with(u"MORVO_CLAUDE_PATH"_s, named)), named);
  for (const QString &useless :
       {QString(), path(u"plain"_s), path(u"missing"_s), m_folder.path()}) {
    EXPECT_EQ(located(searched.with(u"MORVO_CLAUDE_PATH"_s, useless)), path(u"one/claude"_s));
  }
  EXPECT_EQ(ProbeCLI::locate(u"codex"_s, Environment().with(u"MORVO_CODEX_PATH"_s, named),
                             HomeFolder{m_folder.path()}),
            named);
}

TEST_F(ProbeCLITest, WithoutAPathTheUsualPlacesAndTheHomeAreSearched) {
  const QString name = u"morvo-probe-stand-in"_s;
  const HomeFolder home{m_folder.path()};
  EXPECT_FALSE(ProbeCLI::locate(name, Environment(), home));
  const QString program = standIn(u".local/bin/"_s + name, {});
  EXPECT_EQ(ProbeCLI::locate(name, Environment(), home), program);
  EXPECT_FALSE(ProbeCLI::locate(name, Environment().with(u"PATH"_s, {}), home));
  EXPECT_EQ(ProbeCLI::foldersOf(Environment(), HomeFolder{u"/home/me"_s}),
            u"/usr/local/bin:/opt/homebrew/bin:/usr/bin:/home/me/.local/bin"_s);
}

TEST_F(ProbeCLITest, AnEmptyPlaceInThePathIsTheRootFolder) {
  const QString program = standIn(u"program"_s, {});
  const QString fromRoot = program.sliced(1);
  EXPECT_EQ(ProbeCLI::firstExecutable(fromRoot, {}), program);
  EXPECT_EQ(ProbeCLI::firstExecutable(fromRoot, u"/nonexistent::/usr/bin"_s), program);
}

TEST_F(ProbeCLITest, TheStandardOutputIsTheAnswer) {
  EXPECT_EQ(run(u"echo 世界; echo error >&2; exit 7"_s), u"世界\n"_s);
}

TEST_F(ProbeCLITest, WithoutAnyTheStandardErrorIs) {
  EXPECT_EQ(run(u"echo error >&2"_s), u"error\n"_s);
}

TEST_F(ProbeCLITest, SilenceIsNoAnswer) { EXPECT_FALSE(run(u"exit 0"_s)); }

TEST_F(ProbeCLITest, WhatWasSaidBeforeACrashCounts) {
  EXPECT_EQ(run(u"echo early; kill -SEGV $$"_s), u"early\n"_s);
}

TEST_F(ProbeCLITest, BytesThatAreNoTextAreReplaced) {
  EXPECT_EQ(run(u"printf '5%%\\377'"_s), u"5%\uFFFD"_s);
}

TEST_F(ProbeCLITest, AMissingProgramIsNoAnswer) {
  const auto answer = test::Awaited(ProbeCLI::run(m_scheduler,
                                                  {.executable = path(u"missing"_s),
                                                   .arguments = {},
                                                   .timeout = 18s,
                                                   .environment = m_environment},
                                                  {}))
                          .wait();
  ASSERT_TRUE(answer);
  EXPECT_FALSE(*answer);
}

TEST_F(ProbeCLITest, ItRunsInTheRootFolderWithItsArgumentsItsVariablesAndNoInput) {
  m_environment = m_environment.with(u"GIVEN"_s, u"here"_s);
  EXPECT_EQ(run(u"cat; pwd; echo $GIVEN; printf '%s|' \"$@\""_s), u"/\nhere\n/usage||"_s);
}

TEST_F(ProbeCLITest, AFloodEndsTheProgramAndItsFirstMegabyteIsTheAnswer) {
  for (const QString &output : {u"1"_s, u"2"_s}) {
    const auto text = run(u"tr '\\0' x < /dev/zero >&"_s + output);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->size(), qsizetype{1} << 20U);
  }
}

TEST_F(ProbeCLITest, AtTheTimeoutItIsAskedToEndAndItsWordsAreDropped) {
  const auto answer = start(u"trap 'echo asked > %1; exit 0' TERM; echo words; echo $$ > %2; "
                            "while :; do sleep 0.01; done"_s.arg(path(u"asked"_s), path(u"pid"_s)));
  ASSERT_GT(writtenPid(u"pid"_s), 0);
  m_scheduler.advance(18s);
  const auto text = answer.wait();
  ASSERT_TRUE(text);
  EXPECT_FALSE(*text);
  EXPECT_EQ(written(u"asked"_s), "asked\n");
}

TEST_F(ProbeCLITest, WhatIgnoresBeingAskedIsKilledWithItsGrandchildren) {
  const auto answer =
      start(u"trap '' TERM; sh -c 'echo $$ > %1; exec sleep 600' & echo $$ > %2; wait"_s.arg(
          path(u"grandchild"_s), path(u"child"_s)));
  const pid_t child = writtenPid(u"child"_s);
  const pid_t grandchild = writtenPid(u"grandchild"_s);
  m_scheduler.advance(18s);
  m_scheduler.advance(1s);
  const auto text = answer.wait();
  ASSERT_TRUE(text);
  EXPECT_FALSE(*text);
  EXPECT_TRUE(becomesGone(child));
  EXPECT_TRUE(becomesGone(grandchild));
}

TEST_F(ProbeCLITest, AGrandchildThatHoldsThePipesDoesNotHoldUpTheAnswer) {
  const auto text = run(u"echo early; sh -c 'echo $$ > %1; exec sleep 600' & "
                        "while ! [ -s %1 ]; do sleep 0.01; done"_s.arg(path(u"grandchild"_s)));
  const pid_t grandchild = writtenPid(u"grandchild"_s);
  EXPECT_EQ(text, u"early\n"_s);
  ASSERT_GT(grandchild, 0);
  ::kill(grandchild, SIGKILL);
}

TEST_F(ProbeCLITest, AStopEndsTheProgramAtOnce) {
  const auto answer =
      start(u"trap '' TERM; echo $$ > %1; while :; do sleep 0.01; done"_s.arg(path(u"pid"_s)));
  const pid_t child = writtenPid(u"pid"_s);
  m_stop.request_stop();
  ASSERT_TRUE(answer.isDone());
  EXPECT_FALSE(*answer.wait());
  EXPECT_TRUE(becomesGone(child));
}

} // namespace
} // namespace morvo
