#include "platform/Notifier.h"

#include "base/Diagnostics.h"
#include "platform/SettingKeys.h"

#include <utility>

namespace morvo {

Notifier::Notifier(Setting setting, NotificationService &service)
    : m_setting(std::move(setting)), m_service(&service) {}

void Notifier::post(const QString &title, const QString &body) {
  if (!m_setting.boolean(SettingKeys::notifications, true)) {
    return;
  }
  const auto toStandardError = [line = title + QStringLiteral(" — ") + body] {
    Diagnostics::line(u"NOTIFY", line);
  };
  if (!m_service->isAvailable()) {
    toStandardError();
    return;
  }
  m_service->show(title, body, toStandardError);
}

} // namespace morvo
