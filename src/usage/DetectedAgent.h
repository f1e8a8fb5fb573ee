#pragma once

#include <QString>

#include <cstdint>
#include <optional>

namespace morvo {

/// Who is logged in at an agent.
struct AgentAccount {
  QString label;
  QString plan;

  bool operator==(const AgentAccount &) const = default;
};

/// A coding agent found on this machine, and what it burned.
struct DetectedAgent {
  QString id;
  QString name;
  QString detectedPath;
  std::int64_t windowTokens = 0;
  std::int64_t weekTokens = 0;
  double cost = 0; ///< US dollars in the 5-hour window.
  std::optional<AgentAccount> account;

  bool operator==(const DetectedAgent &) const = default;
};

} // namespace morvo
