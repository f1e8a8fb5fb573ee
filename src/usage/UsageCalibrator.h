#pragma once

#include "base/Clock.h"
#include "platform/SettingsStore.h"

#include <cstdint>
#include <vector>

namespace morvo {

/// Learns how much the user's plan allows: it takes the habitual peak of past 5-hour blocks, and of
/// past weeks, for the limit. Asking is how it learns, so ask at each capture, with what was
/// captured, and never again with an old count: it would pass for the present block's.
///
/// Main thread. Other processes may learn into the same store. Blocks and weeks lie on a fixed grid
/// from 1970.
class UsageCalibrator {
public:
  /// Both must outlive it.
  UsageCalibrator(SettingsStore &settings, const Clock &clock);

  /// The learned limit of a 5-hour window, in tokens, now that it holds that many; at least 1, and
  /// never below `window`.
  [[nodiscard]] std::int64_t ceiling(std::int64_t window);
  /// The same of a week.
  [[nodiscard]] std::int64_t weeklyCeiling(std::int64_t week);
  /// The 5-hour window as a percentage of its ceiling, 0 to 100.
  [[nodiscard]] int usedPct(std::int64_t currentTokens);

  /// The value below which nine tenths of the samples lie; 0 when there are none.
  [[nodiscard]] static std::int64_t p90(std::vector<std::int64_t> samples);

private:
  struct Scale;

  [[nodiscard]] std::int64_t learn(const Scale &scale, std::int64_t count);
  /// Puts the count where it belongs; the peaks of past blocks.
  [[nodiscard]] std::vector<std::int64_t> remember(const Scale &scale, std::int64_t count);
  [[nodiscard]] std::vector<std::int64_t> loadSamples(const QString &key) const;
  void saveSamples(const QString &key, const std::vector<std::int64_t> &samples);

  SettingsStore *m_settings;
  const Clock *m_clock;
};

} // namespace morvo
