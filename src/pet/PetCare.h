#pragma once

#include "base/Clock.h"
#include "platform/Setting.h"

#include <optional>

namespace morvo {

/// Counts the care that the user gives, and tells of the milestones it reaches. Everything lives in
/// the settings. Main thread: counters are read, raised and written without a lock.
class PetCare {
public:
  /// `clock` must outlive it.
  PetCare(Setting setting, const Clock &clock);

  void recordPet();
  void recordFeed();
  void recordChat();

  /// When care was given last; the epoch when it never was.
  [[nodiscard]] WallTime lastCareAt() const;

  /// The text of the milestone that the sum of all care has hit exactly, the first time it is
  /// asked; nothing otherwise. A milestone that is passed over never comes back.
  [[nodiscard]] std::optional<QString> consumeMilestoneIfAny();

private:
  void record(const QString &counter);

  Setting m_setting;
  const Clock *m_clock;
};

} // namespace morvo
