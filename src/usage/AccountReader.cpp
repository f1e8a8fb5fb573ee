#include "usage/AccountReader.h"

#include "base/Json.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <sys/stat.h>
#include <utility>

namespace morvo {
namespace {

/// Stands for a name where the file tells only that somebody is logged in.
const QString loggedIn = QStringLiteral("已登录");

/// Told apart by the case of the letters, as the service writes them.
QString prettyPlan(const QJsonObject &account) {
  static const std::array<std::pair<QString, QString>, 5> plans{
      {{QStringLiteral("max_20"), QStringLiteral("Max 20×")},
       {QStringLiteral("max_5"), QStringLiteral("Max 5×")},
       {QStringLiteral("Pro"), QStringLiteral("Pro")},
       {QStringLiteral("team"), QStringLiteral("Team")},
       {QStringLiteral("enterprise"), QStringLiteral("Enterprise")}}};
  const QString tier = account.value(u"organizationRateLimitTier").toString();
  const auto found =
      std::ranges::find_if(plans, [&tier](const auto &plan) { return tier.contains(plan.first); });
  return found == plans.end() ? account.value(u"billingType").toString() : found->second;
}

std::optional<AgentAccount> claudeAccount(const QJsonObject &file) {
  const QJsonValue found = file.value(u"oauthAccount");
  if (!found.isObject()) {
    return std::nullopt;
  }
  const QJsonObject account = found.toObject();
  const QString name = account.value(u"displayName").toString();
  return AgentAccount{.label =
                          name.isEmpty() ? account.value(u"emailAddress").toString(loggedIn) : name,
                      .plan = prettyPlan(account)};
}

std::optional<AgentAccount> codexAccount(const QJsonObject &file) {
  const QString number = file.value(u"tokens").toObject().value(u"account_id").toString(loggedIn);
  return AgentAccount{.label = file.value(u"email").toString(number), .plan = {}};
}

} // namespace

AccountReader::AccountReader(HomeFolder home, FileLayer &files)
    : m_home(std::move(home)), m_files(&files) {}

std::optional<AgentAccount> AccountReader::claude() {
  return account(m_home.file(QStringLiteral(".claude.json")), JsonExcerpt({"oauthAccount"}),
                 claudeAccount, m_claude);
}

std::optional<AgentAccount> AccountReader::codex() {
  return account(m_home.file(QStringLiteral(".codex/auth.json")), JsonExcerpt({"email", "tokens"}),
                 codexAccount, m_codex);
}

std::optional<AgentAccount> AccountReader::account(const QString &path, JsonExcerpt excerpt,
                                                   Parse *parse, Known &known) {
  const std::scoped_lock lock(m_mutex);
  struct stat info{};
  if (::stat(QFile::encodeName(path).constData(), &info) != 0) {
    return std::nullopt;
  }
  // Taken before the file is read: if it changes meanwhile, it is another one the next time.
  const FileIdentity identity = FileIdentity::of(info);
  if (known.identity != identity) {
    const auto isRead =
        m_files->readPieces(path, [&excerpt](QByteArrayView piece) { excerpt.feed(piece); });
    if (!isRead) {
      return std::nullopt;
    }
    const auto file = Json::parseObject(excerpt.text());
    known = {.identity = identity, .account = file ? parse(*file) : std::nullopt};
  }
  return known.account;
}

} // namespace morvo
