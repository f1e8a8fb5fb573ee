#pragma once

namespace morvo {

/// How the program learns what an agent is doing.
enum class SourceEventCapability {
  hooks,     ///< The agent runs a hook.
  heuristic, ///< Guessed from its files.
  none,
};

} // namespace morvo
