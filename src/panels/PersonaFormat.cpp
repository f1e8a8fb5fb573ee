#include "panels/PersonaFormat.h"

namespace morvo::PersonaFormat {
namespace {

constexpr int deepSeaTier = 1;
constexpr int animeTier = 3;

} // namespace

QString tierWord(int tier) {
  if (tier == deepSeaTier) {
    return QStringLiteral("深海");
  }
  return tier == animeTier ? QStringLiteral("二次元") : QStringLiteral("自定义");
}

QString menuText(const MorvoPersona &persona, const QString &currentId) {
  const QString mark = persona.id == currentId ? QStringLiteral("✓ ") : QString();
  return mark + persona.name + QStringLiteral(" · ") + tierWord(persona.tier);
}

QString missingBadge(qsizetype count, bool chinese) {
  if (count < 1) {
    return {};
  }
  return (chinese ? QStringLiteral("缺%1组") : QStringLiteral("%1 missing")).arg(count);
}

QString missingLine(const QStringList &groups) {
  return groups.isEmpty() ? QString() : QStringLiteral("缺：") + groups.join(u'、');
}

QString fillLabel(bool isFilling, bool chinese) {
  if (isFilling) {
    return chinese ? QStringLiteral("补全中…") : QStringLiteral("Filling…");
  }
  return chinese ? QStringLiteral("补全动画") : QStringLiteral("Fill Missing Animations");
}

} // namespace morvo::PersonaFormat
