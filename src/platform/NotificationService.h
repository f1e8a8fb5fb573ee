#pragma once

#include <QString>

#include <functional>

namespace morvo {

/// The desktop's notification service. Main thread.
class NotificationService {
public:
  virtual ~NotificationService() = default;

  /// Whether a service answers on this desktop now.
  [[nodiscard]] virtual bool isAvailable() const = 0;
  /// Shows a notification with the default sound. Plain text: nothing in it is markup. Returns at
  /// once; `failed` is called later when the service did not take it.
  virtual void show(const QString &title, const QString &body, std::function<void()> failed) = 0;
  /// Called when the user clicks one of the program's notifications.
  virtual void onActivated(std::function<void()> handler) = 0;
};

} // namespace morvo
