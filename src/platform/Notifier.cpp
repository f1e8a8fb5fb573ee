#include "platform/Notifier.h"

#include "base/Diagnostics.h"
#include "base/VisibleText.h"
#include "platform/SettingKeys.h"

#include <utility>

namespace morvo {
namespace {

// More than any desktop shows, and little enough for any to take.
constexpr qsizetype longestTitle = 2000;
constexpr qsizetype longestBody = 4000;

} // namespace

Notifier::Notifier(Setting setting, NotificationService &service)
    : m_setting(std::move(setting)), m_service(&service) {}

void Notifier::post(const QString &title, const QString &body) {
  if (!m_setting.boolean(SettingKeys::notifications, true)) {
    return;
  }
  const QString shownTitle = VisibleText::shortened(title, longestTitle);
  const QString shownBody = VisibleText::shortened(body, longestBody);
  const auto toStandardError = [line = shownTitle + QStringLiteral(" — ") + shownBody] {
    Diagnostics::line(u"NOTIFY", line);
  };
  if (!m_service->isAvailable()) {
    toStandardError();
    return;
  }
  m_service->show(shownTitle, shownBody, toStandardError);
}

} // namespace morvo
