#include "support/ManualScheduler.h"

#include <algorithm>
#include <utility>

namespace morvo::test {
namespace {

class ManualTimer final : public TimerState {
public:
  explicit ManualTimer(std::shared_ptr<ManualScheduler::Entry> entry) : m_entry(std::move(entry)) {}
  ManualTimer(const ManualTimer &) = delete;
  ManualTimer &operator=(const ManualTimer &) = delete;
  ~ManualTimer() override { m_entry->active = false; }

  [[nodiscard]] bool isActive() const override { return m_entry->active; }

private:
  std::shared_ptr<ManualScheduler::Entry> m_entry;
};

} // namespace

Scheduler::Timer ManualScheduler::after(Duration delay, std::function<void()> work) {
  return schedule(std::max(delay, Duration::zero()), Duration::zero(), std::move(work));
}

Scheduler::Timer ManualScheduler::every(Duration period, std::function<void()> work) {
  return schedule(period, period, std::move(work));
}

Scheduler::Timer ManualScheduler::schedule(Duration delay, Duration period,
                                           std::function<void()> work) {
  auto entry = std::make_shared<Entry>(
      Entry{.due = m_clock->instant() + delay,
            .period = period,
            .work = std::make_shared<std::function<void()>>(std::move(work))});
  m_entries.push_back(entry);
  return Timer(std::make_unique<ManualTimer>(entry));
}

void ManualScheduler::advance(Duration by) {
  const Instant end = m_clock->instant() + by;
  for (;;) {
    m_entries.remove_if([](const auto &entry) { return !entry->active; });
    const auto next = std::ranges::min_element(
        m_entries, {}, [](const std::shared_ptr<Entry> &entry) { return entry->due; });
    if (next == m_entries.end() || (*next)->due > end) {
      break;
    }
    const auto entry = *next;
    m_clock->advance(std::max(entry->due - m_clock->instant(), Duration::zero()));
    if (entry->period > Duration::zero()) {
      entry->due += entry->period;
    } else {
      entry->active = false;
    }
    const auto work = entry->work;
    (*work)();
  }
  m_clock->advance(std::max(end - m_clock->instant(), Duration::zero()));
}

std::size_t ManualScheduler::pending() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(m_entries, [](const auto &entry) { return entry->active; }));
}

Duration ManualScheduler::untilNext() const {
  Duration least = Duration(-1);
  for (const auto &entry : m_entries) {
    const Duration wait = entry->due - m_clock->instant();
    if (entry->active && (least < Duration::zero() || wait < least)) {
      least = wait;
    }
  }
  return least;
}

} // namespace morvo::test
