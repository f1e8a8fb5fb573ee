#pragma once

#include "platform/NotificationService.h"
#include "platform/Setting.h"

namespace morvo {

/// Posts desktop notifications, as the user's settings allow. Main thread.
class Notifier {
public:
  /// `service` must outlive the notifier.
  Notifier(Setting setting, NotificationService &service);

  /// Nothing while notifications are off. Where no service takes it, the line
  /// "[NOTIFY] title — body" goes to standard error. Texts of thousands of characters are cut.
  void post(const QString &title, const QString &body);

private:
  Setting m_setting;
  NotificationService *m_service;
};

} // namespace morvo
