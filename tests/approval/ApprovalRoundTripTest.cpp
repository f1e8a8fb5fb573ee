#include "app/StoreFixture.h"
#include "hooks/ScriptRun.h"
#include "monitor/Inbox.h"
#include "panels/ApprovalPrompt.h"
#include "support/RunUntil.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using test::ScriptRun;

/// The whole way of a request: Claude Code's own settings, the installed script, the inbox on its
/// thread, the hub, the card, and the answer that Claude Code reads.
class ApprovalRoundTripTest : public test::StoreFixture {
protected:
  void SetUp() override {
    start();
    ASSERT_TRUE(m_store->setActConnected(true).has_value());
    m_realInbox.start([this](const QList<QJsonObject> &signals) { send(signals); });
    m_prompt.setStore(m_store.get());
    m_prompt.setWindow(&m_window);
    m_prompt.setCardShown(true);
    m_prompt.setEndShown(true);
  }

  /// The command that Claude Code finds in its settings for this tool.
  [[nodiscard]] QString hookCommand() const {
    QFile file(m_folder.filePath(QStringLiteral(".claude/settings.json")));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonObject hooks = QJsonDocument::fromJson(file.readAll())[u"hooks"].toObject();
    const QJsonObject group = hooks.value(u"PreToolUse").toArray().first().toObject();
    EXPECT_TRUE(group.value(u"matcher").toString().split(u'|').contains(u"Bash"));
    return group.value(u"hooks").toArray().first()[u"command"].toString();
  }
  [[nodiscard]] std::unique_ptr<ScriptRun> askAsClaudeDoes(const QByteArray &command) const {
    const QByteArray input = R"({"session_id":"s","hook_event_name":"PreToolUse",)"
                             R"("tool_name":"Bash","tool_input":{"command":")" +
                             command + R"(","description":"d"}})";
    return std::make_unique<ScriptRun>(
        QStringLiteral("-c"), input,
        ScriptRun::Options{.arguments = {hookCommand()}, .home = m_folder.path()});
  }
  /// Waits until this request stands on the card, and for as long as an answer needs.
  void seeRequest(const QString &summary) {
    ASSERT_TRUE(test::runUntil([&] { return m_prompt.summary() == summary; }));
    m_window.show();
    Q_EMIT m_window.frameSwapped();
    Q_EMIT m_window.frameSwapped();
    advance(ApprovalPrompt::settleTime);
    ASSERT_TRUE(m_prompt.isApprovable());
  }
  static QJsonObject answerOf(ScriptRun &run) {
    EXPECT_TRUE(run.finish());
    EXPECT_EQ(run.exitCode(), 0);
    return QJsonDocument::fromJson(run.out())[u"hookSpecificOutput"].toObject();
  }

  SystemClock m_realClock;
  Inbox m_realInbox{HomeFolder{m_folder.path()}, Environment(), m_realClock};
  QQuickWindow m_window;
  ApprovalPrompt m_prompt;
};

TEST_F(ApprovalRoundTripTest, AnApprovedCallGoesOnWithoutThePromptOfTheAgent) {
  const auto run = askAsClaudeDoes("make 测试");
  seeRequest(QStringLiteral("make 测试"));
  EXPECT_EQ(m_body.reactions, QStringList{QStringLiteral("alert")});
  m_prompt.approve();
  const QJsonObject answer = answerOf(*run);
  EXPECT_EQ(answer.value(u"permissionDecision").toString(), QStringLiteral("allow"));
  EXPECT_EQ(answer.value(u"permissionDecisionReason").toString(), QStringLiteral("你批准了"));
}

TEST_F(ApprovalRoundTripTest, ARejectedCallIsStopped) {
  const auto run = askAsClaudeDoes("rm -r x");
  seeRequest(QStringLiteral("rm -r x"));
  m_prompt.reject();
  EXPECT_EQ(answerOf(*run).value(u"permissionDecision").toString(), QStringLiteral("deny"));
}

TEST_F(ApprovalRoundTripTest, OfTwoCallsOnlyTheNewestIsAnswered) {
  const auto first = askAsClaudeDoes("first");
  seeRequest(QStringLiteral("first"));
  const QString firstId = m_store->pendingApproval()->id;
  const auto second = askAsClaudeDoes("second");
  seeRequest(QStringLiteral("second"));
  m_prompt.approve();
  EXPECT_EQ(answerOf(*second).value(u"permissionDecision").toString(), QStringLiteral("allow"));
  EXPECT_FALSE(m_prompt.isPending());
  // The first goes on waiting, until its time is over or something else ends it.
  EXPECT_TRUE(first->isRunning());
  QFile noDecision(m_folder.filePath(QStringLiteral(".morvo/decisions/%1.json").arg(firstId)));
  ASSERT_TRUE(noDecision.open(QIODevice::WriteOnly));
  noDecision.close();
  EXPECT_TRUE(answerOf(*first).isEmpty());
}

} // namespace
} // namespace morvo
