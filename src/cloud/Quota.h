#pragma once

#include <optional>

namespace morvo {

/// What the account may still use of the cloud service.
struct Quota {
  int conversationsRemaining = 0;
  int interactionsRemaining = 0;
  std::optional<int> conversationsUsed;
  std::optional<int> interactionsUsed;
  std::optional<int> conversationLimit;
  std::optional<int> interactionLimit;
  std::optional<int> petGensRemaining;
  std::optional<int> petGensUsed;
  std::optional<int> petGenLimit;

  /// Share of the conversations used, 0 to 1; nothing without a limit, and nothing for a limit
  /// above 999999, which means unlimited.
  [[nodiscard]] std::optional<double> conversationProgress() const;
  /// The same for the pets made.
  [[nodiscard]] std::optional<double> petGenProgress() const;

  bool operator==(const Quota &) const = default;
};

} // namespace morvo
