#pragma once

#include "usage/SourceEventCapability.h"

#include <QString>

namespace morvo {

/// A coding agent that the program knows of.
struct SourceAdapter {
  QString id;
  QString name;
  /// The path, relative to the user's home, whose existence shows that the agent is in use.
  QString probeRelative;
  SourceEventCapability eventCapability = SourceEventCapability::none;
  /// Whether its logs tell what it burned.
  bool contributesUsage = false;

  bool operator==(const SourceAdapter &) const = default;
};

} // namespace morvo
