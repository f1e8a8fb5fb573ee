#include "app/PetStore.h"

#include "base/VisibleText.h"
#include "pet/PetPackStore.h"
#include "platform/SettingKeys.h"
#include "voice/VoiceProfileStore.h"

#include <QPointer>

#include <algorithm>

namespace morvo {
namespace {

bool isPermission(const QJsonObject &signal) { return signal.value(u"kind").toString() == u"perm"; }

bool isAnswerablePermission(const QJsonObject &signal) {
  return isPermission(signal) && signal.value(u"id").isString();
}

/// Characters of a name or a label that are kept: they are only ever shown, and anyone may write
/// megabytes of them into the inbox.
constexpr qsizetype longestName = 200;

QString nameOr(const QJsonValue &value, const QString &fallback) {
  return value.isString() ? VisibleText::shortened(value.toString(), longestName) : fallback;
}

} // namespace

void PetStore::handleHookSignals(const QList<QJsonObject> &signals) {
  const auto request = std::ranges::find_if(signals, isAnswerablePermission);
  if (request != signals.end()) {
    handleApproval(*request);
    return;
  }
  if (!m_parts.setting.boolean(SettingKeys::preciseEvents, true)) {
    return;
  }
  // A permission that cannot be answered, for lack of an id, is read as if it were not there.
  QList<QJsonObject> events = signals;
  events.removeIf(isPermission);
  const auto pack = PetPackStore::load(m_parts.files, m_persona.value().id);
  const auto reaction =
      LocalBrain::react(events, linePackOrNull(), pack ? &*pack : nullptr, m_parts.random);
  if (!reaction.action.isEmpty()) {
    m_parts.body.react(reaction.action);
  }
  const auto agent = std::ranges::find_if(events, [](const QJsonObject &signal) {
    return signal.value(u"kind").toString() == u"agent";
  });
  handleReaction(reaction, agent == events.end() ? QJsonObject() : *agent);
  refreshAttention();
  if (m_parts.cloud && m_parts.cloud->hasSession() && !events.isEmpty()) {
    m_parts.cloud->postSignals(events);
  }
}

void PetStore::handleApproval(const QJsonObject &request) {
  const QString tool = nameOr(request.value(u"tool"), QStringLiteral("?"));
  m_pendingApproval = PermRequest{
      .id = request.value(u"id").toString(),
      .tool = tool,
      .summary = request.value(u"summary").toString().left(PermRequest::longestSummary + 1)};
  m_parts.body.react(QStringLiteral("alert"));
  const bool hasLines = m_linePack && !m_linePack->needsInput.isEmpty();
  const QString line = hasLines ? LocalBrain::randomLine(m_linePack->needsInput, m_parts.random)
                                : QStringLiteral("这步要不要批准？");
  const bool notify = m_parts.setting.boolean(SettingKeys::notifications, true);
  propose(line, ProactiveGate::needsUserPriority, notify,
          m_persona.value().name + QStringLiteral("·等你确认：") + VisibleText::ofLine(tool));
  refreshAttention();
}

void PetStore::handleReaction(const LocalBrain::Reaction &reaction,
                              const QJsonObject &agentSignal) {
  if (!reaction.event) {
    return;
  }
  const QString agent = nameOr(agentSignal.value(u"provider"), QStringLiteral("agent"));
  const QJsonValue label = agentSignal.value(u"label");
  QString standardLine;
  QString suffix;
  int priority = ProactiveGate::needsUserPriority;
  switch (*reaction.event) {
  case PetEventKind::agentDone:
    m_recentDone = RecentDone{agent, nameOr(label, {}), m_parts.clock.instant()};
    standardLine = QStringLiteral("完成了。");
    suffix = QStringLiteral("·任务完成");
    priority = ProactiveGate::donePriority;
    break;
  case PetEventKind::agentNeedsInput:
    m_softConfirm =
        SoftConfirm{agent, nameOr(label, QStringLiteral("需要你拍板")), m_parts.clock.instant()};
    [[fallthrough]];
  case PetEventKind::approvalRequest:
    standardLine = QStringLiteral("停下来等你了。");
    suffix = QStringLiteral("·等你确认");
    break;
  default:
    return;
  }
  const bool notify = m_parts.setting.boolean(SettingKeys::notifications, true) && reaction.notify;
  propose(reaction.line.isEmpty() ? standardLine : reaction.line, priority, notify,
          m_persona.value().name + suffix);
}

void PetStore::propose(const QString &line, int priority, bool notify, const QString &title) {
  m_gate.configure(m_parts.setting);
  const auto decision = m_gate.decide(line, priority, notify, m_parts.clock.instant());
  if (decision.notify) {
    m_parts.notifier.post(title, line);
  }
  if (decision.bubble) {
    say(line);
  }
}

void PetStore::say(const QString &text) {
  m_reply = text;
  if (text.isEmpty()) {
    return;
  }
  if (m_parts.speech != nullptr && m_parts.setting.boolean(SettingKeys::voice, true)) {
    const auto profile = VoiceProfileStore::load(
        m_parts.files.candidates(m_persona.value().id, QStringLiteral("voice.json")));
    m_parts.speech->speak(text, profile, [guard = QPointer(this)](VoiceHealth health) {
      if (guard) {
        guard->m_voiceHealth = std::move(health);
      }
    });
  }
  scheduleBubbleClear();
}

void PetStore::scheduleBubbleClear() {
  m_bubbleClear = m_parts.scheduler.after(seconds(m_parts.setting.bubbleDwell()),
                                          [this] { m_reply = QString(); });
}

} // namespace morvo
