#include "platform/L10n.h"

#include <QLocale>

namespace morvo::L10n {

bool isChinese(const QStringList &preferredLanguages) {
  return !preferredLanguages.isEmpty() && preferredLanguages.front().startsWith(u"zh");
}

bool isChinese() { return isChinese(QLocale::system().uiLanguages()); }

namespace Update {

QString ignored(int build, bool chinese) {
  return chinese ? QStringLiteral("已忽略 build %1。可随时再点检查更新。").arg(build)
                 : QStringLiteral("Ignored build %1. You can check again anytime.").arg(build);
}

} // namespace Update
} // namespace morvo::L10n
