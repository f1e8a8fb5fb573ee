#pragma once

#include <QString>

namespace morvo {

/// One entry of the catalogue of actions that the pet in play can be asked for.
struct PetMenuAction {
  QString id;
  QString frameSet;
  QString label;
  /// Whether its frame set has more than one frame.
  bool hasFrames = false;
  bool isLoop = false;

  bool operator==(const PetMenuAction &) const = default;
};

} // namespace morvo
