#pragma once

#include <QString>

namespace morvo {

/// Who is logged in at an agent.
struct AgentAccount {
  QString label;
  QString plan; ///< Empty when the agent does not tell.

  bool operator==(const AgentAccount &) const = default;
};

} // namespace morvo
