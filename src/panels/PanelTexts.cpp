#include "panels/PanelTexts.h"

namespace morvo::PanelTexts {
namespace {

constexpr std::int64_t thousand = 1000;
constexpr std::int64_t million = 1000000;

} // namespace

QString moodLabel(const QString &mood) {
  if (mood == u"happy") {
    return QStringLiteral("心情不错");
  }
  if (mood == u"hype") {
    return QStringLiteral("兴高采烈");
  }
  if (mood == u"hungry") {
    return QStringLiteral("有点饿（额度紧）");
  }
  if (mood == u"sleepy" || mood == u"dreamy") {
    return QStringLiteral("困了");
  }
  if (mood == u"lonely") {
    return QStringLiteral("想你理理它");
  }
  return mood == u"calm" ? QStringLiteral("平静") : mood;
}

PanelTint accent(const QString &mood) {
  if (mood == u"hungry") {
    return {PanelTint::Tone::krill, 1};
  }
  if (mood == u"lonely" || mood == u"sleepy" || mood == u"dreamy") {
    return {PanelTint::Tone::body, 1};
  }
  return {mood == u"mischievous" ? PanelTint::Tone::coral : PanelTint::Tone::theme, 1};
}

QString chatHealth(ChatHealth health) {
  switch (health) {
  case ChatHealth::checking:
    return QStringLiteral("对话连接检查中");
  case ChatHealth::ready:
    return QStringLiteral("对话就绪");
  case ChatHealth::sending:
    return QStringLiteral("发送中");
  case ChatHealth::serverOffline:
    return QStringLiteral("云端服务未连接");
  case ChatHealth::sessionIssue:
    return QStringLiteral("会话需重试");
  case ChatHealth::rateLimited:
    return QStringLiteral("发送太频繁");
  case ChatHealth::quotaExceeded:
    return QStringLiteral("今日对话额度已用完");
  case ChatHealth::modelUnavailable:
    return QStringLiteral("上游模型不可用");
  }
  return {};
}

bool showsChatHealth(ChatHealth health) { return health >= ChatHealth::serverOffline; }

QString fmtTokens(std::int64_t count) {
  if (count < thousand) {
    return QString::number(count);
  }
  const auto exact = static_cast<double>(count);
  return count < million ? QString::asprintf("%.0fK", exact / static_cast<double>(thousand))
                         : QString::asprintf("%.1fM", exact / static_cast<double>(million));
}

} // namespace morvo::PanelTexts
