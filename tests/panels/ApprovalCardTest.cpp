#include "panels/ApprovalPrompt.h"
#include "panels/PanelFixture.h"
#include "panels/SignalCount.h"

#include <QElapsedTimer>
#include <QFile>

#include <functional>

namespace morvo {
namespace {

using namespace std::chrono_literals;

const QString requestId = QStringLiteral("0123456789ab");
const QByteArray nothing = QByteArrayLiteral("<none>");
constexpr int gaps = 22;  // Within the card and beneath it.
constexpr int steps = 40; // More than there are controls.

/// The card in the whole panel, answered by the events that a user causes.
class ApprovalCardTest : public test::PanelFixture {
protected:
  void SetUp() override { open(); }

  void request(const QString &id = requestId) {
    sendPermission(id, QStringLiteral("Bash"), QStringLiteral("make install"));
    letTheCardGrow();
  }
  void letTheCardGrow() {
    waitUntil([this] { return isAtFullHeight(); });
    // Two frames have to show it.
    for (int frame = 0; frame < 3; ++frame) {
      awaitFrame();
    }
  }
  /// The animation follows the wall clock; what is waited for is its end, however late.
  void waitUntil(const std::function<bool()> &condition) {
    QElapsedTimer patience;
    patience.start();
    while (!condition() && !patience.hasExpired(20000)) {
      settle();
    }
    ASSERT_TRUE(condition());
  }
  void settleRequest(const QString &id = requestId) {
    request(id);
    advance(ApprovalPrompt::settleTime);
    settle();
  }
  /// Lets the window draw once more by itself.
  void awaitFrame() {
    const test::SignalCount frames(m_view.get(), &QQuickWindow::frameSwapped);
    QElapsedTimer patience;
    patience.start();
    m_view->update();
    while (frames.value() == 0 && !patience.hasExpired(20000)) {
      QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    ASSERT_GT(frames.value(), 0);
  }
  [[nodiscard]] bool isAtFullHeight() const {
    QQuickItem *const button = approve();
    QQuickItem *const tab = control(QStringLiteral("对话"));
    return button != nullptr && tab != nullptr &&
           button->mapToScene(QPointF(0, button->height())).y() <= tab->mapToScene({}).y() - gaps;
  }
  [[nodiscard]] QQuickItem *approve() const { return control(QStringLiteral("批准")); }
  [[nodiscard]] QQuickItem *reject() const { return control(QStringLiteral("拒绝")); }
  /// The box of the summary, which scrolls.
  [[nodiscard]] QQuickItem *summaryBox() const {
    QQuickItem *item = approve()->parentItem()->parentItem();
    for (QQuickItem *const found : item->findChildren<QQuickItem *>()) {
      if (found->inherits("QQuickFlickable")) {
        return found;
      }
    }
    return nullptr;
  }
  [[nodiscard]] QByteArray decision(const QString &id = requestId) const {
    QFile file(m_folder.filePath(QStringLiteral(".morvo/decisions/%1.json").arg(id)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : nothing;
  }
  /// Tab until that control has the keyboard.
  void tabTo(QQuickItem *wanted) {
    ASSERT_NE(wanted, nullptr);
    for (int step = 0; step < steps && !wanted->hasActiveFocus(); ++step) {
      press(Qt::Key_Tab);
    }
    ASSERT_TRUE(wanted->hasActiveFocus());
  }
};

TEST_F(ApprovalCardTest, AClickOnApproveLetsTheAgentGoOn) {
  settleRequest();
  keepPicture(QStringLiteral("approval_full"));
  click(approve());
  EXPECT_TRUE(decision().contains("allow")) << decision().constData();
  waitUntil([this] { return approve() == nullptr; });
}

TEST_F(ApprovalCardTest, AClickOnRejectStopsTheAgent) {
  settleRequest();
  click(reject());
  EXPECT_TRUE(decision().contains("deny")) << decision().constData();
}

TEST_F(ApprovalCardTest, ACardThatHasJustComeTakesNoClickNorKey) {
  request();
  advance(ApprovalPrompt::settleTime - 1ms);
  settle();
  click(approve());
  approve()->forceActiveFocus(Qt::TabFocusReason);
  for (const int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_Select}) {
    press(key);
  }
  EXPECT_EQ(decision(), nothing);
  EXPECT_FALSE(approve()->isEnabled());
  advance(1ms);
  settle();
  EXPECT_TRUE(approve()->isEnabled());
}

TEST_F(ApprovalCardTest, TabReachesRejectFirstAndNeitherHasTheFocusByItself) {
  settleRequest();
  EXPECT_FALSE(approve()->hasActiveFocus());
  EXPECT_FALSE(reject()->hasActiveFocus());
  tabTo(reject());
  press(Qt::Key_Tab);
  EXPECT_TRUE(approve()->hasActiveFocus());
}

class ApprovalCardKeyTest : public ApprovalCardTest, public testing::WithParamInterface<int> {};

TEST_P(ApprovalCardKeyTest, ApprovesWithTheKeyboardOnApprove) {
  settleRequest();
  tabTo(approve());
  press(GetParam());
  EXPECT_TRUE(decision().contains("allow")) << decision().constData();
}

TEST_P(ApprovalCardKeyTest, RejectsWithTheKeyboardOnReject) {
  settleRequest();
  tabTo(reject());
  press(GetParam());
  EXPECT_TRUE(decision().contains("deny")) << decision().constData();
}

TEST_P(ApprovalCardKeyTest, HeldDownAnswersNothing) {
  settleRequest();
  tabTo(approve());
  hold(GetParam());
  hold(GetParam());
  QKeyEvent release(QEvent::KeyRelease, GetParam(), Qt::NoModifier);
  QCoreApplication::sendEvent(m_view.get(), &release);
  settle();
  EXPECT_EQ(decision(), nothing);
  EXPECT_NE(approve(), nullptr);
}

TEST_P(ApprovalCardKeyTest, StruckInAWindowThatHasJustComeForwardAnswersNothing) {
  settleRequest();
  tabTo(approve());
  QWindow other;
  other.show();
  other.requestActivate();
  settle();
  ASSERT_FALSE(m_view->isActive());
  m_view->requestActivate();
  settle();
  ASSERT_TRUE(m_view->isActive());
  press(GetParam());
  EXPECT_EQ(decision(), nothing);
  advance(ApprovalPrompt::settleTime);
  tabTo(approve());
  press(GetParam());
  EXPECT_TRUE(decision().contains("allow")) << decision().constData();
}

TEST_P(ApprovalCardKeyTest, TheNextRequestIsNotAnsweredByTheFocusThatAnsweredTheLast) {
  settleRequest();
  tabTo(approve());
  const QString next = QStringLiteral("ba9876543210");
  press(GetParam());
  ASSERT_TRUE(decision().contains("allow"));
  settleRequest(next);
  press(GetParam());
  EXPECT_EQ(decision(next), nothing);
}

TEST_P(ApprovalCardKeyTest, ARequestThatTakesThePlaceOfAnotherIsNotAnsweredByItsFocus) {
  settleRequest();
  tabTo(approve());
  const QString next = QStringLiteral("ba9876543210");
  settleRequest(next);
  press(GetParam());
  EXPECT_EQ(decision(next), nothing);
  EXPECT_EQ(decision(), nothing);
}

TEST_P(ApprovalCardKeyTest, ElsewhereInThePanelItAnswersNothing) {
  settleRequest();
  tabTo(control(QStringLiteral("监控")));
  press(GetParam());
  EXPECT_EQ(decision(), nothing);
}

INSTANTIATE_TEST_SUITE_P(Keys, ApprovalCardKeyTest,
                         testing::Values(Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space,
                                         Qt::Key_Select));

TEST_F(ApprovalCardTest, OtherKeysOnTheButtonsAnswerNothing) {
  settleRequest();
  tabTo(approve());
  for (const int key : {Qt::Key_Y, Qt::Key_A, Qt::Key_F4, Qt::Key_Yes}) {
    press(key);
    hold(key);
  }
  EXPECT_EQ(decision(), nothing);
}

TEST_F(ApprovalCardTest, EscapeOnItsButtonsClosesThePanelAndTheRequestStays) {
  settleRequest();
  tabTo(approve());
  const test::SignalCount closing(root(), SIGNAL(closeRequested()));
  press(Qt::Key_Escape);
  EXPECT_EQ(closing.value(), 1);
  EXPECT_EQ(decision(), nothing);
  EXPECT_TRUE(m_store->pendingApproval().has_value());
}

TEST_F(ApprovalCardTest, AfterAnAnswerTheKeyboardStillWorks) {
  settleRequest();
  tabTo(approve());
  press(Qt::Key_Return);
  const test::SignalCount closing(root(), SIGNAL(closeRequested()));
  press(Qt::Key_Escape);
  EXPECT_EQ(closing.value(), 1);
}

const QString longSummary =
    QStringLiteral("echo hi") + QStringLiteral("\n").repeated(60) + QStringLiteral("rm -rf ~");

TEST_F(ApprovalCardTest, ALongSummaryIsReadToItsEndBeforeItIsApproved) {
  sendPermission(requestId, QStringLiteral("Bash"), longSummary);
  letTheCardGrow();
  advance(ApprovalPrompt::settleTime);
  settle();
  keepPicture(QStringLiteral("approval_long"));
  EXPECT_TRUE(reject()->isEnabled());
  EXPECT_FALSE(approve()->isEnabled());
  summaryBox()->setProperty("contentY", summaryBox()->property("contentHeight").toDouble() -
                                            summaryBox()->height());
  settle();
  click(approve());
  EXPECT_TRUE(decision().contains("allow")) << decision().constData();
}

TEST_F(ApprovalCardTest, TheKeyboardReadsALongSummaryToItsEnd) {
  sendPermission(requestId, QStringLiteral("Bash"), longSummary);
  letTheCardGrow();
  advance(ApprovalPrompt::settleTime);
  settle();
  tabTo(summaryBox());
  for (int step = 0; step < 100; ++step) {
    press(Qt::Key_Down);
  }
  EXPECT_TRUE(approve()->isEnabled());
  for (int step = 0; step < 100; ++step) {
    press(Qt::Key_Up);
  }
  EXPECT_EQ(summaryBox()->property("contentY").toDouble(), 0);
}

TEST_F(ApprovalCardTest, ARequestThatTakesThePlaceOfAnotherIsShownFromItsFirstLineOn) {
  sendPermission(requestId, QStringLiteral("Bash"), longSummary);
  letTheCardGrow();
  summaryBox()->setProperty("contentY", 300);
  const QString next = QStringLiteral("ba9876543210");
  sendPermission(next, QStringLiteral("Bash"), longSummary);
  letTheCardGrow();
  advance(ApprovalPrompt::settleTime);
  settle();
  EXPECT_EQ(summaryBox()->property("contentY").toDouble(), 0);
  EXPECT_FALSE(approve()->isEnabled());
}

TEST_F(ApprovalCardTest, AShorterRequestThatTakesThePlaceOfOneReadHalfWayIsReadToItsEndToo) {
  sendPermission(requestId, QStringLiteral("Bash"), longSummary);
  letTheCardGrow();
  summaryBox()->setProperty("contentY", 600);
  settle();
  sendPermission(QStringLiteral("ba9876543210"), QStringLiteral("Bash"),
                 QStringLiteral("\n").repeated(20) + QStringLiteral("rm -rf ~"));
  letTheCardGrow();
  advance(ApprovalPrompt::settleTime);
  settle();
  EXPECT_EQ(summaryBox()->property("contentY").toDouble(), 0);
  EXPECT_TRUE(reject()->isEnabled());
  EXPECT_FALSE(approve()->isEnabled());
}

TEST_F(ApprovalCardTest, APressThatBeganBeforeTheCardTookAnswersIsNone) {
  request();
  const QPointF middle =
      approve()->mapToScene(QPointF(approve()->width(), approve()->height()) / 2);
  mouse(QEvent::MouseButtonPress, middle);
  advance(ApprovalPrompt::settleTime);
  settle();
  mouse(QEvent::MouseButtonRelease, middle);
  EXPECT_EQ(decision(), nothing);
}

} // namespace
} // namespace morvo
