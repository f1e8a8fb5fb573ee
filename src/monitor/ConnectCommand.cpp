#include "monitor/ConnectCommand.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextStream>

#include <algorithm>

namespace morvo::ConnectCommand {
namespace {

using Connectors = std::span<const std::unique_ptr<AgentConnector>>;

const QString connectWord = QStringLiteral("connect");
const QString disconnectWord = QStringLiteral("disconnect");
const QString statusWord = QStringLiteral("status");
const QString jsonFlag = QStringLiteral("--json");

QJsonObject state(const AgentConnector &agent) {
  return {{QStringLiteral("id"), agent.id()},
          {QStringLiteral("name"), agent.name()},
          {QStringLiteral("connected"), agent.isConnected()},
          {QStringLiteral("file"), agent.file()},
          {QStringLiteral("obstacles"), QJsonArray::fromStringList(agent.obstacles())}};
}

void printJson(const QJsonObject &object, QTextStream &out) {
  out << QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
}

void printObstacles(const AgentConnector &agent, QTextStream &out) {
  for (const QString &obstacle : agent.obstacles()) {
    out << QStringLiteral("  ⚠ ") << obstacle << '\n';
  }
}

int status(Connectors connectors, bool json, QTextStream &out) {
  QJsonArray agents;
  for (const auto &agent : connectors) {
    if (json) {
      agents.append(state(*agent));
      continue;
    }
    out << agent->name() << QStringLiteral("：")
        << (agent->isConnected() ? QStringLiteral("已连接") : QStringLiteral("未连接"))
        << QStringLiteral("（%1）").arg(agent->file()) << '\n';
    printObstacles(*agent, out);
  }
  if (json) {
    printJson({{QStringLiteral("agents"), agents}}, out);
  }
  return succeeded;
}

int changeAsJson(AgentConnector &agent, bool on, QTextStream &out) {
  const auto outcome = on ? agent.connect() : agent.disconnect();
  QJsonObject object = state(agent);
  object.insert(QStringLiteral("ok"), outcome.has_value());
  if (!outcome) {
    object.insert(QStringLiteral("error"), outcome.error().message());
  }
  printJson(object, out);
  return outcome ? succeeded : failed;
}

int change(AgentConnector &agent, bool on, QTextStream &out, QTextStream &err) {
  const auto outcome = on ? agent.connect() : agent.disconnect();
  if (!outcome) {
    err << (on ? QStringLiteral("连接 %1 失败：") : QStringLiteral("断开 %1 失败："))
               .arg(agent.name())
        << outcome.error().message() << '\n';
    return failed;
  }
  out << (on ? QStringLiteral("已连接 %1（%2）") : QStringLiteral("已断开 %1（%2）"))
             .arg(agent.name(), agent.file())
      << '\n';
  if (on) {
    printObstacles(agent, out);
  }
  return succeeded;
}

int usage(Connectors connectors, QTextStream &err) {
  QStringList ids;
  for (const auto &agent : connectors) {
    ids << agent->id();
  }
  const QString choice = ids.join(u'|');
  err << QStringLiteral("用法：morvobar connect <%1> [--json]\n"
                        "      morvobar disconnect <%1> [--json]\n"
                        "      morvobar status [--json]\n")
             .arg(choice);
  return wrongUsage;
}

} // namespace

bool isMeant(const QStringList &words) {
  return !words.isEmpty() && (words.first() == connectWord || words.first() == disconnectWord ||
                              words.first() == statusWord);
}

int run(const QStringList &words, Connectors connectors, QTextStream &out, QTextStream &err) {
  QStringList rest = words;
  const bool json = rest.removeAll(jsonFlag) > 0;
  if (rest.size() == 1 && rest.first() == statusWord) {
    return status(connectors, json, out);
  }
  if (rest.size() != 2 || (rest[0] != connectWord && rest[0] != disconnectWord)) {
    return usage(connectors, err);
  }
  const auto agent =
      std::ranges::find_if(connectors, [&](const auto &each) { return each->id() == rest[1]; });
  if (agent == connectors.end()) {
    return usage(connectors, err);
  }
  const bool on = rest[0] == connectWord;
  return json ? changeAsJson(**agent, on, out) : change(**agent, on, out, err);
}

} // namespace morvo::ConnectCommand
