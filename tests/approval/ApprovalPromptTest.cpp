#include "panels/ApprovalPrompt.h"

#include "app/StoreFixture.h"
#include "support/RunUntil.h"

#include <QDir>
#include <QFile>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QTextLayout>

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using Answer = ApprovalPrompt::Answer;

const QString requestId = QStringLiteral("0123456789ab");

/// A prompt whose panel is drawn and gets the focus when the test says so.
class ApprovalPromptTest : public test::StoreFixture {
protected:
  static void SetUpTestSuite() {
    // Once: nothing may ask for it after the first window.
    static const bool isChosen = [] {
      QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
      return true;
    }();
    ASSERT_TRUE(isChosen);
  }

  void SetUp() override {
    start();
    m_prompt.setStore(m_store.get());
    m_prompt.setWindow(&m_window);
    m_prompt.setCardShown(true);
    m_prompt.setEndShown(true);
  }

  void request(const QString &summary = QStringLiteral("ls"),
               const QString &tool = QStringLiteral("Bash"), const QString &id = requestId) {
    sendPermission(id, tool, summary);
  }
  /// Brings the panel up and draws it.
  void showPanel() {
    m_window.show();
    frame();
  }
  /// As many frames as it takes until the card is sure to be seen.
  void frame() {
    Q_EMIT m_window.frameSwapped();
    Q_EMIT m_window.frameSwapped();
  }
  /// The panel's window becomes the active one.
  void focusPanel() {
    m_window.requestActivate();
    QCoreApplication::processEvents();
    ASSERT_TRUE(m_window.isActive());
  }
  /// A request stands in a panel that has the focus, for long enough.
  void settleRequest(const QString &summary = QStringLiteral("ls")) {
    request(summary);
    showPanel();
    focusPanel();
    frame();
    advance(500ms);
  }
  [[nodiscard]] QByteArray decision(const QString &id = requestId) const {
    QFile file(m_folder.filePath(QStringLiteral(".morvo/decisions/%1.json").arg(id)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("<none>");
  }

  QQuickWindow m_window;
  ApprovalPrompt m_prompt;
};

TEST_F(ApprovalPromptTest, WithoutARequestThereIsNothingToShowNorToAnswer) {
  showPanel();
  advance(10s);
  EXPECT_FALSE(m_prompt.isPending());
  EXPECT_EQ(m_prompt.question(), QString());
  EXPECT_EQ(m_prompt.summary(), QString());
  EXPECT_FALSE(m_prompt.isRejectable());
  EXPECT_FALSE(m_prompt.isApprovable());
  m_prompt.approve();
  m_prompt.reject();
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, Qt::Key_Return, false));
  EXPECT_FALSE(QDir(m_folder.filePath(QStringLiteral(".morvo/decisions"))).exists());
  request();
  EXPECT_TRUE(m_prompt.isPending()) << "an answer was kept for the next request";
}

TEST_F(ApprovalPromptTest, ARequestIsAskedAboutInItsOwnWords) {
  int changes = 0;
  QObject::connect(&m_prompt, &ApprovalPrompt::requestChanged, [&changes] { ++changes; });
  request(QStringLiteral("make -j2"));
  EXPECT_EQ(changes, 1);
  EXPECT_TRUE(m_prompt.isPending());
  EXPECT_EQ(m_prompt.question(), QStringLiteral("要批准 Bash 吗？"));
  EXPECT_EQ(m_prompt.summary(), QStringLiteral("make -j2"));
}

TEST_F(ApprovalPromptTest, WhatWouldNotBeSeenIsMadeVisibleAndMarkupStaysText) {
  request(QStringLiteral("echo <b>a</b>\n\u202Erm"), QStringLiteral("Ba%1sh\n\u2066"));
  EXPECT_EQ(m_prompt.question(), QStringLiteral("要批准 Ba%1sh[U+000A][U+2066] 吗？"));
  EXPECT_EQ(m_prompt.summary(), QStringLiteral("echo <b>a</b>\n[U+202E]rm"));
}

/// The blank-separated words of a line, from left to right as they are drawn.
QStringList drawnWords(const QString &line) {
  QTextLayout layout(line);
  layout.beginLayout();
  const QTextLine drawn = layout.createLine();
  layout.endLayout();
  std::map<qreal, QString> words;
  qsizetype begin = 0;
  for (const QString &word : line.split(u' ')) {
    qreal left = std::numeric_limits<qreal>::max();
    for (const QGlyphRun &run :
         drawn.glyphRuns(static_cast<int>(begin), static_cast<int>(word.size()))) {
      left = std::min(left, run.boundingRect().left());
    }
    QString bare = word;
    words.emplace(left, bare.remove(QChar(0x200E)));
    begin += word.size() + 1;
  }
  QStringList list;
  std::ranges::transform(words, std::back_inserter(list), &std::pair<const qreal, QString>::second);
  return list;
}

TEST_F(ApprovalPromptTest, NoDirectionOfWritingMovesThePartsOfACommand) {
  const QString command = QStringLiteral("אאא /בבב && rm -r ججج 12 דדד");
  request(command);
  EXPECT_NE(drawnWords(command), command.split(u' ')) << "there is nothing to mend";
  EXPECT_EQ(drawnWords(m_prompt.summary()), command.split(u' '));
}

TEST_F(ApprovalPromptTest, AClickCountsFromHalfASecondAfterTheCardsFirstFrame) {
  request();
  m_window.show();
  advance(10s);
  EXPECT_FALSE(m_prompt.isApprovable());
  frame();
  advance(499ms);
  EXPECT_FALSE(m_prompt.isApprovable());
  EXPECT_FALSE(m_prompt.isRejectable());
  m_prompt.approve();
  m_prompt.reject();
  EXPECT_EQ(decision(), "<none>");
  EXPECT_TRUE(m_prompt.isPending());
  advance(1ms);
  EXPECT_TRUE(m_prompt.isApprovable());
  EXPECT_TRUE(m_prompt.isRejectable());
  m_prompt.approve();
  EXPECT_EQ(decision(), R"({"decision":"allow"})");
  EXPECT_FALSE(m_prompt.isPending());
  EXPECT_FALSE(m_prompt.isApprovable());
}

TEST_F(ApprovalPromptTest, TheTimeBeginsWhenTheCardStandsAtItsFullHeight) {
  m_prompt.setCardShown(false);
  request();
  showPanel();
  advance(10s);
  EXPECT_FALSE(m_prompt.isRejectable());
  m_prompt.setCardShown(true);
  advance(10s);
  EXPECT_FALSE(m_prompt.isRejectable()) << "the whole card has not been drawn";
  frame();
  advance(499ms);
  EXPECT_FALSE(m_prompt.isApprovable());
  advance(1ms);
  EXPECT_TRUE(m_prompt.isApprovable());
}

TEST_F(ApprovalPromptTest, AFrameBegunBeforeTheCardStoodDoesNotCount) {
  request();
  m_window.show();
  Q_EMIT m_window.frameSwapped();
  advance(10s);
  EXPECT_FALSE(m_prompt.isApprovable());
  Q_EMIT m_window.frameSwapped();
  advance(500ms);
  EXPECT_TRUE(m_prompt.isApprovable());
}

TEST_F(ApprovalPromptTest, ACardThatGrowsTakesNoAnswerUntilItStandsAgain) {
  settleRequest();
  m_prompt.setCardShown(false);
  EXPECT_FALSE(m_prompt.isApprovable());
  m_prompt.approve();
  EXPECT_EQ(decision(), "<none>");
  m_prompt.setCardShown(true);
  frame();
  advance(500ms);
  EXPECT_TRUE(m_prompt.isApprovable());
}

TEST_F(ApprovalPromptTest, TheFramesItWaitsForAreDrawn) {
  request();
  m_window.show();
  ASSERT_TRUE(test::runUntil([this] {
    advance(500ms);
    return m_prompt.isApprovable();
  }));
}

TEST_F(ApprovalPromptTest, RejectingDenies) {
  settleRequest();
  m_prompt.reject();
  EXPECT_EQ(decision(), R"({"decision":"deny"})");
  EXPECT_FALSE(m_prompt.isPending());
}

TEST_F(ApprovalPromptTest, LaterFramesDoNotStartTheTimeAnew) {
  request();
  showPanel();
  advance(400ms);
  frame();
  advance(100ms);
  EXPECT_TRUE(m_prompt.isApprovable());
}

TEST_F(ApprovalPromptTest, ARequestThatReplacesAnotherMustBeSeenItself) {
  settleRequest();
  int changes = 0;
  QObject::connect(&m_prompt, &ApprovalPrompt::answerableChanged, [&changes] { ++changes; });
  // Looks exactly like the one before.
  request(QStringLiteral("ls"), QStringLiteral("Bash"), QStringLiteral("bbbbbbbbbbbb"));
  EXPECT_EQ(changes, 1);
  m_prompt.approve();
  EXPECT_FALSE(m_prompt.keyPressed(Answer::Approve, Qt::Key_A, false));
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, Qt::Key_Return, false));
  EXPECT_EQ(decision(QStringLiteral("bbbbbbbbbbbb")), "<none>");
  frame();
  advance(500ms);
  m_prompt.approve();
  EXPECT_EQ(decision(), "<none>");
  EXPECT_EQ(decision(QStringLiteral("bbbbbbbbbbbb")), R"({"decision":"allow"})");
}

TEST_F(ApprovalPromptTest, AReplacementIsDrawnEvenIfItLooksTheSame) {
  settleRequest();
  QCoreApplication::processEvents();
  int frames = 0;
  QObject::connect(&m_window, &QQuickWindow::frameSwapped, [&frames] { ++frames; });
  request(QStringLiteral("ls"), QStringLiteral("Bash"), QStringLiteral("bbbbbbbbbbbb"));
  EXPECT_TRUE(test::runUntil([&frames] { return frames > 0; }));
}

TEST_F(ApprovalPromptTest, APanelThatWasClosedStartsTheTimeAnew) {
  settleRequest();
  m_window.hide();
  EXPECT_FALSE(m_prompt.isApprovable());
  frame();
  advance(10s);
  EXPECT_FALSE(m_prompt.isApprovable());
  showPanel();
  advance(499ms);
  EXPECT_FALSE(m_prompt.isApprovable());
  advance(1ms);
  EXPECT_TRUE(m_prompt.isApprovable());
}

class AnswerKeyTest : public ApprovalPromptTest, public testing::WithParamInterface<int> {};

TEST_P(AnswerKeyTest, AnswersAsItsButtonSays) {
  settleRequest();
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Reject, GetParam(), false));
  EXPECT_EQ(decision(), R"({"decision":"deny"})");
  request();
  frame();
  advance(500ms);
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, GetParam(), false));
  EXPECT_EQ(decision(), R"({"decision":"allow"})");
}

INSTANTIATE_TEST_SUITE_P(Keys, AnswerKeyTest,
                         testing::Values(Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space));

class OtherKeyTest : public ApprovalPromptTest, public testing::WithParamInterface<int> {};

TEST_P(OtherKeyTest, IsLeftToThePanelAndGivesNoAnswer) {
  settleRequest();
  EXPECT_FALSE(m_prompt.keyPressed(Answer::Approve, GetParam(), false));
  EXPECT_TRUE(m_prompt.isPending());
}

INSTANTIATE_TEST_SUITE_P(Keys, OtherKeyTest,
                         testing::Values(Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Y,
                                         Qt::Key_A, 0));

TEST_F(ApprovalPromptTest, AHeldKeyGivesNoAnswer) {
  settleRequest();
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, Qt::Key_Return, true));
  EXPECT_TRUE(m_prompt.isPending());
}

TEST_F(ApprovalPromptTest, AKeyJustAfterTheCardsAppearanceGivesNoAnswer) {
  showPanel();
  focusPanel();
  advance(10s);
  request();
  frame();
  advance(499ms);
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, Qt::Key_Return, false));
  EXPECT_TRUE(m_prompt.isPending());
  advance(1ms);
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, Qt::Key_Return, false));
  EXPECT_FALSE(m_prompt.isPending());
}

TEST_F(ApprovalPromptTest, AKeyMeantForAnotherWindowGivesNoAnswer) {
  settleRequest();
  QWindow other;
  other.show();
  other.requestActivate();
  QCoreApplication::processEvents();
  ASSERT_FALSE(m_window.isActive());
  advance(10s);
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, Qt::Key_Return, false));
  EXPECT_TRUE(m_prompt.isPending());
  // The user comes back, the key still on its way.
  focusPanel();
  advance(499ms);
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, Qt::Key_Return, false));
  EXPECT_TRUE(m_prompt.isPending());
  advance(1ms);
  EXPECT_TRUE(m_prompt.keyPressed(Answer::Approve, Qt::Key_Return, false));
  EXPECT_FALSE(m_prompt.isPending());
}

TEST_F(ApprovalPromptTest, AnOverlongSummaryIsCutWithAWordAndCannotBeApproved) {
  constexpr qsizetype longest = ApprovalPrompt::longestSummary;
  settleRequest(QString(longest, u'x'));
  EXPECT_EQ(m_prompt.summary().size(), longest);
  EXPECT_TRUE(m_prompt.isApprovable());
  request(QString(longest, u' ') + QStringLiteral("rm"));
  frame();
  advance(500ms);
  EXPECT_TRUE(
      m_prompt.summary().endsWith(QStringLiteral("\n……后面还有没有显示的内容，不能在这里批准")));
  EXPECT_FALSE(m_prompt.isApprovable());
  m_prompt.approve();
  EXPECT_TRUE(m_prompt.isPending());
  EXPECT_TRUE(m_prompt.isRejectable());
  m_prompt.reject();
  EXPECT_FALSE(m_prompt.isPending());
}

TEST_F(ApprovalPromptTest, NothingIsApprovedBeforeItsEndWasInSight) {
  m_prompt.setEndShown(false);
  settleRequest(QStringLiteral("echo hi\n\n\n\n\n\n\n\n\n\nrm -rf ~"));
  EXPECT_FALSE(m_prompt.isApprovable());
  EXPECT_TRUE(m_prompt.isRejectable());
  EXPECT_EQ(m_prompt.note(), QStringLiteral("往下看完才能批准"));
  m_prompt.approve();
  EXPECT_EQ(decision(), "<none>");
  m_prompt.setEndShown(true);
  EXPECT_EQ(m_prompt.note(), QStringLiteral("看完了，可以决定"));
  m_prompt.setEndShown(false); // Back up, to read it again.
  EXPECT_TRUE(m_prompt.isApprovable());
  m_prompt.approve();
  EXPECT_TRUE(decision().contains("allow")) << decision().constData();
}

TEST_F(ApprovalPromptTest, TheEndOfOneRequestIsNotTheEndOfTheNext) {
  settleRequest();
  ASSERT_TRUE(m_prompt.isApprovable());
  m_prompt.setEndShown(false);
  const QString next = QStringLiteral("ba9876543210");
  request(QStringLiteral("a\nb"), QStringLiteral("Bash"), next);
  m_prompt.setEndShown(true); // The card has yet to be drawn with it.
  m_prompt.setEndShown(false);
  frame();
  advance(500ms);
  EXPECT_TRUE(m_prompt.isRejectable());
  EXPECT_FALSE(m_prompt.isApprovable());
}

TEST_F(ApprovalPromptTest, AnEndPassedWhileTheCardTurnsToARequestWasNotSeen) {
  settleRequest();
  m_prompt.setEndShown(false);
  QObject::connect(&m_prompt, &ApprovalPrompt::requestChanged, &m_prompt, [this] {
    m_prompt.setEndShown(true);
    m_prompt.setEndShown(false);
  });
  request(QStringLiteral("a\nb"), QStringLiteral("Bash"), QStringLiteral("ba9876543210"));
  frame();
  advance(500ms);
  EXPECT_TRUE(m_prompt.isRejectable());
  EXPECT_FALSE(m_prompt.isApprovable());
}

TEST_F(ApprovalPromptTest, AnEmptySummaryHasNoEndToLookFor) {
  m_prompt.setEndShown(false);
  settleRequest(QString());
  EXPECT_TRUE(m_prompt.isApprovable());
  EXPECT_EQ(m_prompt.note(), QString());
}

struct Cut {
  const char *name;
  QString summary;
  bool mayBe;
};

void PrintTo(const Cut &cut, std::ostream *out) { *out << cut.name; }

class CutSummaryTest : public ApprovalPromptTest, public testing::WithParamInterface<Cut> {};

TEST_P(CutSummaryTest, IsSaidToBePossiblyNotAll) {
  settleRequest(GetParam().summary);
  EXPECT_EQ(m_prompt.note(), GetParam().mayBe ? QStringLiteral("这里可能不是全部内容") : QString());
  EXPECT_TRUE(m_prompt.isApprovable());
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, CutSummaryTest,
    testing::Values(Cut{"below", QString(199, u'a'), false},
                    Cut{"at_the_cut", QString(200, u'a'), true},
                    Cut{"by_a_stranger", QString(201, u'a'), false},
                    Cut{"beyond_the_basic_plane", QStringLiteral("😀").repeated(200), true},
                    Cut{"half_as_many", QStringLiteral("😀").repeated(100), false},
                    Cut{"json_at_its_cut", QStringLiteral("{") + QString(139, u'a'), true},
                    Cut{"json_below", QStringLiteral("{") + QString(138, u'a'), false},
                    Cut{"command_of_that_length", QString(140, u'a'), false}),
    [](const auto &row) { return row.param.name; });

TEST_F(ApprovalPromptTest, AStoreThatIsGoneLeavesAnEmptyPrompt) {
  settleRequest();
  m_store.reset();
  EXPECT_FALSE(m_prompt.isPending());
  EXPECT_FALSE(m_prompt.isApprovable());
  m_prompt.approve();
  m_prompt.reject();
  frame();
  m_window.hide();
}

TEST_F(ApprovalPromptTest, AStoreThatGoesTellsThatNothingWaitsAnyMore) {
  settleRequest();
  int requestChanges = 0;
  int answerableChanges = 0;
  QObject::connect(&m_prompt, &ApprovalPrompt::requestChanged,
                   [&requestChanges] { ++requestChanges; });
  QObject::connect(&m_prompt, &ApprovalPrompt::answerableChanged,
                   [&answerableChanges] { ++answerableChanges; });
  m_store.reset();
  EXPECT_EQ(requestChanges, 1);
  EXPECT_EQ(answerableChanges, 1);
  EXPECT_FALSE(m_prompt.isRejectable());
}

TEST_F(ApprovalPromptTest, AStoreThatGoesBeforeTheFirstFrameStartsNoTime) {
  request();
  m_window.show();
  m_store.reset();
  frame();
  advance(10s);
  EXPECT_FALSE(m_prompt.isApprovable());
  EXPECT_FALSE(m_prompt.isPending());
}

TEST_F(ApprovalPromptTest, AWindowThatIsGoneTakesNoAnswers) {
  request();
  {
    QQuickWindow window;
    m_prompt.setWindow(&window);
    window.show();
    Q_EMIT window.frameSwapped();
    Q_EMIT window.frameSwapped();
  }
  advance(10s);
  EXPECT_FALSE(m_prompt.isApprovable());
}

} // namespace
} // namespace morvo
