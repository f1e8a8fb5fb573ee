#include "app/StoreFixture.h"

#include "monitor/InboxReader.h"

#include <QDir>
#include <QFile>

namespace morvo {
namespace {

using namespace std::chrono_literals;

const QString requestId = QStringLiteral("0123456789ab");

class PetStoreApprovalTest : public test::StoreFixture {
protected:
  void request(const QString &id = requestId) {
    sendPermission(id, QStringLiteral("Bash"), QStringLiteral("rm -r build"));
  }
  [[nodiscard]] QByteArray content(const QString &relative) const {
    QFile file(m_folder.filePath(relative));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("<none>");
  }
  [[nodiscard]] QByteArray decision(const QString &id = requestId) const {
    return content(QStringLiteral(".morvo/decisions/%1.json").arg(id));
  }
  [[nodiscard]] QByteArray claudeSettings() const {
    return content(QStringLiteral(".claude/settings.json"));
  }
};

TEST_F(PetStoreApprovalTest, ApprovingWritesTheDecisionAndTakesTheRequestOffTheList) {
  start();
  request();
  m_store->decideApproval(true);
  EXPECT_EQ(decision(), R"({"decision":"allow"})");
  EXPECT_FALSE(m_store->pendingApproval().has_value());
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("都安静 · 没有要你拍板的事"));
}

TEST_F(PetStoreApprovalTest, RejectingWritesADenial) {
  start();
  request();
  m_store->decideApproval(false);
  EXPECT_EQ(decision(), R"({"decision":"deny"})");
  EXPECT_FALSE(m_store->pendingApproval().has_value());
}

TEST_F(PetStoreApprovalTest, ADecisionClearsTheSoftConfirmationToo) {
  start();
  sendAgent(QStringLiteral("needs_input"), QStringLiteral("选一个"));
  request();
  m_store->decideApproval(true);
  EXPECT_FALSE(m_store->softConfirm().has_value());
  EXPECT_EQ(m_store->attentionItems().front().id, QStringLiteral("calm"));
}

TEST_F(PetStoreApprovalTest, WithoutARequestADecisionOnlyClearsTheSoftConfirmation) {
  start();
  sendAgent(QStringLiteral("needs_input"));
  m_store->decideApproval(true);
  EXPECT_FALSE(m_store->softConfirm().has_value());
  EXPECT_FALSE(QDir(m_folder.filePath(QStringLiteral(".morvo/decisions"))).exists());
}

TEST_F(PetStoreApprovalTest, OnlyTheNewestRequestIsAnswered) {
  start();
  request(QStringLiteral("aaaaaaaaaaaa"));
  request(QStringLiteral("bbbbbbbbbbbb"));
  m_store->decideApproval(true);
  EXPECT_EQ(decision(QStringLiteral("aaaaaaaaaaaa")), "<none>");
  EXPECT_EQ(decision(QStringLiteral("bbbbbbbbbbbb")), R"({"decision":"allow"})");
  EXPECT_FALSE(m_store->pendingApproval().has_value());
}

TEST_F(PetStoreApprovalTest, ARequestWaitsForAsLongAsNobodyAnswers) {
  start();
  request();
  advance(24h);
  EXPECT_TRUE(m_store->pendingApproval().has_value());
  EXPECT_EQ(m_store->attentionHeadline(), QStringLiteral("权限：Bash：rm -r build"));
}

TEST_F(PetStoreApprovalTest, AForgedIdIsNoPathAndYetTheCardGoes) {
  start();
  request(QStringLiteral("../../.claude/settings"));
  m_store->decideApproval(true);
  EXPECT_EQ(claudeSettings(), "<none>");
  EXPECT_FALSE(QDir(m_folder.filePath(QStringLiteral(".morvo/decisions"))).exists());
  EXPECT_FALSE(m_store->pendingApproval().has_value());
}

TEST_F(PetStoreApprovalTest, ADecisionThatCannotBeWrittenTakesTheCardAway) {
  QFile inTheWay(m_folder.filePath(QStringLiteral(".morvo/decisions")));
  start();
  ASSERT_TRUE(inTheWay.open(QIODevice::WriteOnly));
  request();
  m_store->decideApproval(true);
  EXPECT_FALSE(m_store->pendingApproval().has_value());
}

TEST_F(PetStoreApprovalTest, TheProgramsFoldersAreForTheUserAlone) {
  start();
  request();
  m_store->decideApproval(true);
  for (const QString &folder : {QStringLiteral(".morvo"), QStringLiteral(".morvo/decisions")}) {
    const auto status = m_layer.status(m_folder.filePath(folder));
    ASSERT_TRUE(status.has_value());
    EXPECT_EQ(status->mode, 0700U) << folder.toStdString();
  }
}

TEST_F(PetStoreApprovalTest, WhatWouldNotBeSeenInATitleIsMadeVisible) {
  start();
  sendPermission(requestId, QStringLiteral("<b>Bash</b>\u202Ehs.x\n"), {});
  ASSERT_EQ(m_notifications.shown.size(), 1);
  EXPECT_EQ(m_notifications.shown.front().first,
            QStringLiteral("小沃·等你确认：<b>Bash</b>[U+202E]hs.x[U+000A]"));
}

TEST_F(PetStoreApprovalTest, ARequestOfMegabytesIsKeptOnlyAsFarAsItIsShown) {
  start();
  const QString endless(10 << 20, u'x');
  sendPermission(requestId, endless, endless);
  const auto pending = m_store->pendingApproval();
  ASSERT_TRUE(pending.has_value());
  EXPECT_EQ(pending->tool, QString(200, u'x') + QStringLiteral("……"));
  EXPECT_EQ(pending->summary, QString(PermRequest::longestSummary + 1, u'x'));
  EXPECT_LT(m_store->attentionHeadline().size(), 1100);
  ASSERT_EQ(m_notifications.shown.size(), 1);
  EXPECT_LT(m_notifications.shown.front().first.size(), 300);
  m_store->decideApproval(true);
  EXPECT_EQ(decision(), R"({"decision":"allow"})");
}

TEST_F(PetStoreApprovalTest, OfTwoRequestsInOneBatchOfTheInboxTheNewestIsShown) {
  const QString path = m_folder.filePath(QStringLiteral("inbox.jsonl"));
  QFile inbox(path);
  ASSERT_TRUE(inbox.open(QIODevice::WriteOnly));
  start();
  InboxReader reader(
      path, [this](const QList<QJsonObject> &signals, const std::stop_token &) { send(signals); },
      false, [](std::chrono::milliseconds, const std::stop_token &) {});
  inbox.write(R"({"kind":"perm","id":"aaaaaaaaaaaa","tool":"Bash","summary":"first"})"
              "\n"
              R"({"kind":"perm","id":"bbbbbbbbbbbb","tool":"Edit","summary":"second"})"
              "\n");
  inbox.close();
  reader.drain();
  EXPECT_EQ(m_store->pendingApproval(), (PermRequest{.id = QStringLiteral("bbbbbbbbbbbb"),
                                                     .tool = QStringLiteral("Edit"),
                                                     .summary = QStringLiteral("second")}));
  EXPECT_EQ(m_body.reactions.size(), 2);
}

TEST_F(PetStoreApprovalTest, TheSwitchPutsTheHookIntoClaudesSettingsAndTakesItOut) {
  start();
  ASSERT_TRUE(m_store->setActConnected(true).has_value());
  EXPECT_TRUE(claudeSettings().contains("/.morvo/perm.sh claude"));
  EXPECT_NE(content(QStringLiteral(".morvo/perm.sh")), "<none>");
  ASSERT_TRUE(m_store->setActConnected(false).has_value());
  EXPECT_FALSE(claudeSettings().contains("perm.sh"));
}

TEST_F(PetStoreApprovalTest, WhenTheScriptsCannotBeInstalledTheSwitchChangesNothing) {
  ASSERT_TRUE(QDir(m_folder.path()).mkpath(QStringLiteral(".morvo/hook.sh/x")));
  start();
  EXPECT_FALSE(m_store->setActConnected(true).has_value());
  EXPECT_EQ(claudeSettings(), "<none>");
}

} // namespace
} // namespace morvo
