#pragma once

#include "base/Scheduler.h"

namespace morvo {

/// Timers of the Qt event loop of the thread that calls. A delay is never shorter than asked for;
/// the ticks of a period of 250 ms or more may each come a twentieth early.
class QtScheduler final : public Scheduler {
public:
  [[nodiscard]] Timer after(Duration delay, std::function<void()> work) override;
  [[nodiscard]] Timer every(Duration period, std::function<void()> work) override;
};

} // namespace morvo
