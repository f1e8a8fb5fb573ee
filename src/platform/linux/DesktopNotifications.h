#pragma once

#include "platform/NotificationService.h"

#include <QDBusConnection>
#include <QObject>
#include <QSet>

#include <chrono>
#include <optional>

class QDBusMessage;
class QDBusPendingCallWatcher;

namespace morvo {

/// Notifications over `org.freedesktop.Notifications` of a session bus. Waits for no answer: what
/// the service can do is asked in the background, and a service that does not answer in time
/// counts as one that refused. Main thread.
class DesktopNotifications final : public QObject, public NotificationService {
  Q_OBJECT

public:
  static constexpr std::chrono::milliseconds answerDeadline{5000};

  explicit DesktopNotifications(QDBusConnection bus,
                                std::chrono::milliseconds deadline = answerDeadline);

  /// True while the bus is there and the service runs or can be started by the bus; also while the
  /// bus has not yet said so.
  [[nodiscard]] bool isAvailable() const override;
  void show(const QString &title, const QString &body, std::function<void()> failed) override;
  void onActivated(std::function<void()> handler) override;

private:
  using Answer = std::function<void(const QDBusMessage &)>;

  Q_SLOT void actionInvoked(uint id, const QString &action);
  Q_SLOT void notificationClosed(uint id, uint reason);

  void call(const QDBusMessage &message, const Answer &answer);
  void askBus();
  void askCapabilities(const std::function<void()> &then);
  void ownerChanged(const QString &newOwner);
  void send(const QString &title, const QString &body, const std::function<void()> &failed);
  [[nodiscard]] bool can(const QString &capability) const;

  QDBusConnection m_bus;
  std::chrono::milliseconds m_deadline;
  std::optional<bool> m_isOwned;
  std::optional<bool> m_isActivatable;
  /// Nothing until the service that runs now has told.
  std::optional<QStringList> m_capabilities;
  /// The notifications that still stand.
  QSet<uint> m_shown;
  std::function<void()> m_activated;
};

} // namespace morvo
