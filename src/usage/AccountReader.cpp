#include "usage/AccountReader.h"

#include "base/Json.h"

#include <algorithm>
#include <array>
#include <utility>

namespace morvo::AccountReader {
namespace {

/// Stands for a name where the file tells only that somebody is logged in.
const QString loggedIn = QStringLiteral("已登录");

std::optional<QJsonObject> object(const QString &path, FileLayer &files) {
  const auto content = files.read(path);
  return content ? Json::parseObject(*content) : std::nullopt;
}

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

} // namespace

std::optional<AgentAccount> claude(const HomeFolder &home, FileLayer &files) {
  const auto file = object(home.file(QStringLiteral(".claude.json")), files);
  const QJsonValue found = file ? file->value(u"oauthAccount") : QJsonValue();
  if (!found.isObject()) {
    return std::nullopt;
  }
  const QJsonObject account = found.toObject();
  const QString name = account.value(u"displayName").toString();
  return AgentAccount{.label =
                          name.isEmpty() ? account.value(u"emailAddress").toString(loggedIn) : name,
                      .plan = prettyPlan(account)};
}

std::optional<AgentAccount> codex(const HomeFolder &home, FileLayer &files) {
  const auto file = object(home.file(QStringLiteral(".codex/auth.json")), files);
  if (!file) {
    return std::nullopt;
  }
  const QString number = file->value(u"tokens").toObject().value(u"account_id").toString(loggedIn);
  return AgentAccount{.label = file->value(u"email").toString(number), .plan = {}};
}

} // namespace morvo::AccountReader
