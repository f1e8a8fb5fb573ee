#pragma once

#include "monitor/SourceLoad.h"

#include <QString>

#include <optional>
#include <vector>

namespace morvo {

/// All that is going on, as the attention engine looks at it.
struct AttentionSnapshot {
  struct PendingConfirm {
    QString agent;
    QString summary;

    bool operator==(const PendingConfirm &) const = default;
  };

  struct RecentDone {
    QString agent;
    QString label; ///< Perhaps empty.

    bool operator==(const RecentDone &) const = default;
  };

  std::optional<PendingConfirm> pendingConfirm;
  std::optional<RecentDone> recentDone;
  std::vector<SourceLoad> loads;
  int runningCount = 0; ///< Sessions at work.
  bool claudeDetected = false;
  bool claudeHooked = false;
  bool codexDetected = false;
  bool codexHooked = false;
  bool geminiDetected = false;
  bool geminiHooked = false;
  bool cursorDetected = false;
  bool cursorHooked = false;

  bool operator==(const AttentionSnapshot &) const = default;
};

} // namespace morvo
