#include "monitor/ConnectSelfTest.h"

#include "base/Diagnostics.h"
#include "monitor/ClaudeConnector.h"

namespace morvo::ConnectSelfTest {
namespace {

void say(const QString &text) { Diagnostics::line(u"CONNECT", text); }

QString word(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

void sayFailure(const std::expected<void, HookError> &outcome) {
  if (!outcome) {
    say(QStringLiteral("failed: ") + outcome.error().message());
  }
}

/// How often the file names the command as a text of its own.
qsizetype occurrences(const HookContext &context, const ClaudeConnector &connector) {
  const auto content = context.files->read(connector.settingsURL());
  const nlohmann::json command(connector.command().toStdString());
  return content.value_or(QByteArray()).count(QByteArray::fromStdString(command.dump()));
}

} // namespace

void run(const HookContext &context) {
  ClaudeConnector connector(context);
  sayFailure(connector.connect());
  say(QStringLiteral("after connect#1: isConnected=") + word(connector.isConnected()));
  sayFailure(connector.connect());
  say(QStringLiteral("after connect#2(幂等): 命令出现 %1 次(每事件1次=3次合理)")
          .arg(occurrences(context, connector)));
  sayFailure(connector.disconnect());
  say(QStringLiteral("after disconnect: isConnected=") + word(connector.isConnected()));
}

} // namespace morvo::ConnectSelfTest
