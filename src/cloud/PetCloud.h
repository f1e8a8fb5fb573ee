#pragma once

#include "cloud/Quota.h"

#include <QJsonObject>
#include <QString>

#include <functional>
#include <optional>

namespace morvo {

/// The calls by which the hub keeps in touch with the account service. Main thread; every answer
/// comes later, never from within the call.
class PetCloud {
public:
  /// The quota of a successful answer; nothing on any failure.
  using QuotaAnswer = std::function<void(std::optional<Quota>)>;

  virtual ~PetCloud() = default;

  /// Whether a session is open, so that signals may be posted.
  [[nodiscard]] virtual bool hasSession() const = 0;
  virtual void setAccessToken(const std::optional<QString> &token) = 0;
  virtual void sync(QuotaAnswer answer) = 0;
  /// `type` is "feed" and the like.
  virtual void interact(const QString &type, QuotaAnswer answer) = 0;
  /// Hook events, for the user's other devices. The outcome is of no interest.
  virtual void postSignals(const QList<QJsonObject> &signals) = 0;
};

} // namespace morvo
