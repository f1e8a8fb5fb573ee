#pragma once

#include <QString>

namespace morvo {

/// How far the pet has grown, for display.
struct GrowthState {
  int xp = 0;
  int stage = 1; ///< From 1 to 5.
  QString title;
  int streak = 0; ///< Days in a row.
  int dailyDone = 0;
  int dailyGoal = 0;
  int xpInStage = 0;   ///< Beyond the stage's threshold.
  int xpStageSpan = 0; ///< From this threshold to the next; 0 at the top.
  bool atMax = false;

  bool operator==(const GrowthState &) const = default;
};

} // namespace morvo
