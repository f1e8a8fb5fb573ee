#include "usage/AccountReader.h"

#include "base/Json.h"
#include "usage/JsonMembers.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <simdjson.h>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace morvo {
namespace {

/// Stands for a name where the file tells only that somebody is logged in.
const QString loggedIn = QStringLiteral("已登录");

/// The object that is the member of that name in the object that the text is. What stands beside it
/// is only checked for closed brackets and texts.
std::optional<QJsonObject> objectIn(QByteArrayView text, std::string_view name) {
  namespace json = simdjson::ondemand;
  const auto size = static_cast<std::size_t>(text.size());
  json::parser parser;
  json::document document;
  json::object object;
  std::string_view found;
  const auto look = [name, &found](std::string_view key, json::value value) {
    if (key != name) {
      return true;
    }
    found = {};
    json::json_type type{};
    json::object member;
    if (value.type().get(type) != simdjson::SUCCESS || type != json::json_type::object) {
      return true;
    }
    return value.get_object().get(member) == simdjson::SUCCESS &&
           member.raw_json().get(found) == simdjson::SUCCESS;
  };
  if (parser.iterate(text.data(), size, size + simdjson::SIMDJSON_PADDING).get(document) !=
          simdjson::SUCCESS ||
      document.get_object().get(object) != simdjson::SUCCESS || !JsonMembers::each(object, look) ||
      document.current_location().error() != simdjson::OUT_OF_BOUNDS) {
    return std::nullopt;
  }
  return Json::parseObject(QByteArray(found.data(), static_cast<qsizetype>(found.size())));
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

std::optional<AgentAccount> claudeAccount(QByteArrayView text) {
  const auto account = objectIn(text, "oauthAccount");
  if (!account) {
    return std::nullopt;
  }
  const QString name = account->value(u"displayName").toString();
  return AgentAccount{.label = name.isEmpty() ? account->value(u"emailAddress").toString(loggedIn)
                                              : name,
                      .plan = prettyPlan(*account)};
}

std::optional<AgentAccount> codexAccount(QByteArrayView text) {
  const auto file = Json::parseObject(QByteArray::fromRawData(text.data(), text.size()));
  if (!file) {
    return std::nullopt;
  }
  const QString number = file->value(u"tokens").toObject().value(u"account_id").toString(loggedIn);
  return AgentAccount{.label = file->value(u"email").toString(number), .plan = {}};
}

} // namespace

AccountReader::AccountReader(HomeFolder home, FileLayer &files)
    : m_home(std::move(home)), m_files(&files) {}

std::optional<AgentAccount> AccountReader::claude() {
  return account(m_home.file(QStringLiteral(".claude.json")), claudeAccount, m_claude);
}

std::optional<AgentAccount> AccountReader::codex() {
  return account(m_home.file(QStringLiteral(".codex/auth.json")), codexAccount, m_codex);
}

std::optional<AgentAccount> AccountReader::account(const QString &path, Parse *parse,
                                                   Known &known) {
  const std::scoped_lock lock(m_mutex);
  struct stat info{};
  if (::stat(QFile::encodeName(path).constData(), &info) != 0) {
    return std::nullopt;
  }
  // Taken before the file is read: if it changes meanwhile, it is another one the next time.
  const FileIdentity identity = FileIdentity::of(info);
  if (known.identity != identity) {
    auto content = m_files->read(path);
    if (!content) {
      return std::nullopt;
    }
    const qsizetype size = content->size();
    content->append(static_cast<qsizetype>(simdjson::SIMDJSON_PADDING), ' ');
    known = {.identity = identity, .account = parse(QByteArrayView(*content).first(size))};
  }
  return known.account;
}

} // namespace morvo
