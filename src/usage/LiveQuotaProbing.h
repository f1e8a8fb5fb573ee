#pragma once

#include "usage/LiveRateLimit.h"

#include <QCoroTask>
#include <QString>

#include <optional>
#include <stop_token>

namespace morvo {

/// Asks one agent how much of its plan is used.
class LiveQuotaProbing {
public:
  virtual ~LiveQuotaProbing() = default;

  /// The agent's id.
  [[nodiscard]] virtual QString providerId() const = 0;
  /// Whether the agent's command is there. Looks at the disk: thread-safe, and not for the main
  /// thread.
  [[nodiscard]] virtual bool isAvailable() const = 0;
  /// The figures; nothing on any failure, and nothing as soon as `stop` is requested. Main thread.
  [[nodiscard]] virtual QCoro::Task<std::optional<LiveRateLimit>> probe(std::stop_token stop) = 0;
};

} // namespace morvo
