#pragma once

#include "cloud/Quota.h"

#include <QCoroTask>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

namespace morvo {

/// The calls by which the hub keeps in touch with the account service. Main thread.
class PetCloud {
public:
  virtual ~PetCloud() = default;

  /// Whether a session is open, so that signals may be posted.
  [[nodiscard]] virtual bool hasSession() const = 0;
  /// The login's token for the next calls; none without a login.
  virtual void setAccessToken(const std::optional<QString> &token) = 0;
  /// Pulls the account's state. The quota of a successful answer; nothing on any failure.
  [[nodiscard]] virtual QCoro::Task<std::optional<Quota>> sync() = 0;
  /// Reports an interaction, "feed" and the like. As `sync`.
  [[nodiscard]] virtual QCoro::Task<std::optional<Quota>> interact(QString type) = 0;
  /// Passes hook events on. Returns at once; the outcome is of no interest.
  virtual void postSignals(const QList<QJsonObject> &signals) = 0;
};

} // namespace morvo
