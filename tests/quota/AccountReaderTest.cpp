#include "usage/AccountReader.h"

#include "base/AtomicFile.h"
#include "base/SystemFileLayer.h"
#include "support/FailingFileLayer.h"
#include "support/Unprivileged.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <cerrno>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;

class AccountReaderTest : public testing::Test {
protected:
  void put(const QString &name, const QByteArray &content) {
    SystemFileLayer files;
    ASSERT_TRUE(AtomicFile::write(files, m_folder.filePath(name), content).has_value());
  }
  std::optional<AgentAccount> claude(const QByteArray &content) {
    put(u".claude.json"_s, content);
    return m_accounts.claude();
  }
  std::optional<AgentAccount> codex(const QByteArray &content) {
    put(u".codex/auth.json"_s, content);
    return m_accounts.codex();
  }

  QTemporaryDir m_folder;
  HomeFolder m_home{m_folder.path()};
  test::FailingFileLayer m_files;
  AccountReader m_accounts{m_home, m_files};
};

AgentAccount account(const QString &label, const QString &plan = {}) {
  return {.label = label, .plan = plan};
}

TEST_F(AccountReaderTest, WithoutTheFilesNobodyIsLoggedIn) {
  EXPECT_FALSE(m_accounts.claude());
  EXPECT_FALSE(m_accounts.codex());
}

TEST_F(AccountReaderTest, ClaudesNameComesBeforeTheAddress) {
  EXPECT_EQ(claude(R"({"oauthAccount":{"displayName":"Ada","emailAddress":"a@b.c"}})"),
            account(u"Ada"_s));
  EXPECT_EQ(claude(R"({"oauthAccount":{"displayName":"","emailAddress":"a@b.c"}})"),
            account(u"a@b.c"_s));
  EXPECT_EQ(claude(R"({"oauthAccount":{"displayName":7,"emailAddress":"a@b.c"}})"),
            account(u"a@b.c"_s));
  EXPECT_EQ(claude(R"({"oauthAccount":{"emailAddress":null}})"), account(u"已登录"_s));
  EXPECT_EQ(claude(R"({"oauthAccount":{}})"), account(u"已登录"_s));
}

class ClaudePlanTest
    : public AccountReaderTest,
      public testing::WithParamInterface<std::pair<const char *, const char16_t *>> {};

TEST_P(ClaudePlanTest, TheTierNamesThePlan) {
  const auto &[fields, plan] = GetParam();
  const auto found = claude(QByteArray(R"({"oauthAccount":{)") + fields + "}}");
  ASSERT_TRUE(found);
  EXPECT_EQ(found->plan, QString::fromUtf16(plan));
}

INSTANTIATE_TEST_SUITE_P(
    Tiers, ClaudePlanTest,
    testing::Values(
        std::pair(R"("organizationRateLimitTier":"default_claude_max_20x")", u"Max 20×"),
        std::pair(R"("organizationRateLimitTier":"default_claude_max_5x")", u"Max 5×"),
        std::pair(R"("organizationRateLimitTier":"claude_Pro")", u"Pro"),
        std::pair(R"("organizationRateLimitTier":"my_team_Pro")", u"Pro"),
        std::pair(R"("organizationRateLimitTier":"my_team")", u"Team"),
        std::pair(R"("organizationRateLimitTier":"enterprise_x")", u"Enterprise"),
        std::pair(R"("organizationRateLimitTier":"claude_pro","billingType":"stripe")", u"stripe"),
        std::pair(R"("organizationRateLimitTier":"TEAM")", u""),
        std::pair(R"("organizationRateLimitTier":5,"billingType":"stripe")", u"stripe"),
        std::pair(R"("billingType":"")", u""), std::pair(R"("billingType":{"a":1})", u"")));

TEST_F(AccountReaderTest, CodexTellsTheAddressOrTheAccountsNumber) {
  EXPECT_EQ(codex(R"({"email":"a@b.c","tokens":{"account_id":"n"}})"), account(u"a@b.c"_s));
  EXPECT_EQ(codex(R"({"tokens":{"account_id":"n","access_token":"secret"}})"), account(u"n"_s));
  EXPECT_EQ(codex(R"({"email":null,"tokens":"none"})"), account(u"已登录"_s));
  EXPECT_EQ(codex(R"({"OPENAI_API_KEY":"secret"})"), account(u"已登录"_s));
}

class OddAccountFileTest : public AccountReaderTest,
                           public testing::WithParamInterface<const char *> {};

TEST_P(OddAccountFileTest, NobodyIsKnownToBeLoggedIn) {
  EXPECT_FALSE(claude(GetParam()));
  put(u".codex/auth.json"_s, GetParam());
  const auto known = m_accounts.codex();
  EXPECT_TRUE(!known || *known == account(u"已登录"_s));
}

INSTANTIATE_TEST_SUITE_P(Shapes, OddAccountFileTest,
                         testing::Values("", "null", "[]", "[{\"oauthAccount\":{}}]", "{",
                                         "{\"oauthAccount\":", "{\"oauthAccount\":[]}",
                                         "{\"oauthAccount\":\"Ada\"}", "{\"oauthAccount\":null}",
                                         "\xFF\xFE{\"oauthAccount\":{}}", "<html></html>", "{}"));

TEST_F(AccountReaderTest, AFileThatHasNotChangedIsNotReadAgain) {
  EXPECT_EQ(claude(R"({"oauthAccount":{"displayName":"Ada"}})"), account(u"Ada"_s));
  EXPECT_EQ(codex(R"({"email":"a@b.c"})"), account(u"a@b.c"_s));
  EXPECT_EQ(m_files.calls(), 2);
  EXPECT_EQ(m_accounts.claude(), account(u"Ada"_s));
  EXPECT_EQ(m_accounts.codex(), account(u"a@b.c"_s));
  EXPECT_EQ(m_files.calls(), 2);
  EXPECT_EQ(claude(R"({"oauthAccount":{"displayName":"Bob"}})"), account(u"Bob"_s));
  EXPECT_EQ(m_files.calls(), 3);
  ASSERT_TRUE(QFile::remove(m_folder.filePath(u".claude.json"_s)));
  EXPECT_FALSE(m_accounts.claude());
}

TEST_F(AccountReaderTest, NobodyIsRememberedToo) {
  EXPECT_FALSE(claude("{}"));
  EXPECT_FALSE(m_accounts.claude());
  EXPECT_EQ(m_files.calls(), 1);
}

TEST_F(AccountReaderTest, AFileThatCannotBeReadForAMomentIsTriedAgain) {
  put(u".claude.json"_s, R"({"oauthAccount":{}})");
  test::FailingFileLayer failing;
  AccountReader accounts(m_home, failing);
  failing.failAt(1, test::FailingFileLayer::Fault::error, EIO);
  EXPECT_FALSE(accounts.claude());
  EXPECT_TRUE(accounts.claude());
}

TEST_F(AccountReaderTest, ClaudesFileMayBeALink) {
  put(u"dotfiles/claude.json"_s, R"({"oauthAccount":{"displayName":"Ada"}})");
  ASSERT_TRUE(QFile::link(m_folder.filePath(u"dotfiles/claude.json"_s),
                          m_folder.filePath(u".claude.json"_s)));
  EXPECT_EQ(m_accounts.claude(), account(u"Ada"_s));
  put(u"dotfiles/claude.json"_s, R"({"oauthAccount":{"displayName":"Bob"}})");
  EXPECT_EQ(m_accounts.claude(), account(u"Bob"_s));
}

TEST_F(AccountReaderTest, WhatStandsBesideTheAccountDoesNotMatter) {
  EXPECT_EQ(claude(R"({"a":[{"oauthAccount":{"displayName":"no"}}],"oauthAccount":7,)"
                   R"("oauthAccount":{"displayName":"A\u0064\"a}","x":[{}]},"b":"\ud800"})"
                   "\n"),
            account(u"Ad\"a}"_s));
  EXPECT_FALSE(claude(R"({"oauthAccount":{"displayName":"Ada"},"oauthAccount":null})"));
  EXPECT_FALSE(claude(R"({"oauthAccount":{"displayName":"Ada"},"b":[1,)"));
  EXPECT_FALSE(claude(R"({"oauthAccount":{"displayName":"Ada"}} {})"));
}

TEST_F(AccountReaderTest, AFileOf21MegabytesTellsWithoutBeingHeldInMemory) {
  const QByteArray history =
      R"("projects":{"p":{"history":[")" + QByteArray(qsizetype{21} << 20U, 'x') + R"("]}},)";
  EXPECT_EQ(claude("{" + history + R"("oauthAccount":{"displayName":"Ada"}})"), account(u"Ada"_s));
  EXPECT_EQ(codex("{" + history + R"("email":"a@b.c"})"), account(u"a@b.c"_s));
}

TEST_F(AccountReaderTest, AFolderAndAPipeAreNobody) {
  ASSERT_TRUE(QDir(m_folder.path()).mkpath(u".claude.json"_s));
  EXPECT_FALSE(m_accounts.claude());
  ASSERT_TRUE(QDir(m_folder.path()).mkpath(u".codex"_s));
  const QString pipe = m_folder.filePath(u".codex/auth.json"_s);
  ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
  EXPECT_FALSE(m_accounts.codex());
}

TEST_F(AccountReaderTest, AFileWithoutPermissionIsNobody) {
  put(u".claude.json"_s, R"({"oauthAccount":{}})");
  ASSERT_EQ(::chmod(QFile::encodeName(m_folder.path()).constData(), 0755), 0);
  ASSERT_EQ(::chmod(QFile::encodeName(m_folder.filePath(u".claude.json"_s)).constData(), 0), 0);
  const test::Unprivileged user;
  ASSERT_TRUE(user.works());
  EXPECT_FALSE(m_accounts.claude());
}

TEST_F(AccountReaderTest, AnAccountFileOfEightGigabytesIsNobody) {
  put(u".claude.json"_s, "{}");
  ASSERT_TRUE(QFile::resize(m_folder.filePath(u".claude.json"_s), qint64{8} << 30U));
  EXPECT_FALSE(m_accounts.claude());
}

} // namespace
} // namespace morvo
