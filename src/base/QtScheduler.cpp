#include "base/QtScheduler.h"

#include <QTimer>

#include <algorithm>
#include <limits>
#include <utility>

namespace morvo {
namespace {

/// Below this period a timer drives pictures, and a late tick shows. A longer period may come a
/// twentieth early or late, together with others; a delay may not come early.
constexpr std::chrono::milliseconds preciseBelow{250};

/// QTimer counts milliseconds in an int; longer waits (beyond 24 days) end then.
constexpr std::chrono::milliseconds longestInterval{std::numeric_limits<int>::max()};

class QtTimerState final : public TimerState {
public:
  QtTimerState(Duration interval, bool repeating, std::function<void()> work)
      : m_timer(new QTimer), m_work(std::make_shared<std::function<void()>>(std::move(work))) {
    const auto milliseconds = std::clamp(std::chrono::ceil<std::chrono::milliseconds>(interval),
                                         std::chrono::milliseconds::zero(), longestInterval);
    m_timer->setSingleShot(!repeating);
    m_timer->setTimerType(!repeating || milliseconds < preciseBelow ? Qt::PreciseTimer
                                                                    : Qt::CoarseTimer);
    // The work may destroy this state: it is kept alive until it has returned.
    QObject::connect(m_timer.get(), &QTimer::timeout, [work = std::weak_ptr(m_work)] {
      if (const auto running = work.lock()) {
        (*running)();
      }
    });
    m_timer->start(milliseconds);
  }

  [[nodiscard]] bool isActive() const override { return m_timer->isActive(); }

private:
  struct DeleteLater {
    void operator()(QTimer *timer) const {
      timer->stop();
      timer->disconnect();
      timer->deleteLater();
    }
  };
  std::unique_ptr<QTimer, DeleteLater> m_timer;
  std::shared_ptr<std::function<void()>> m_work;
};

} // namespace

Scheduler::Timer QtScheduler::after(Duration delay, std::function<void()> work) {
  return Timer(std::make_unique<QtTimerState>(delay, false, std::move(work)));
}

Scheduler::Timer QtScheduler::every(Duration period, std::function<void()> work) {
  return Timer(std::make_unique<QtTimerState>(period, true, std::move(work)));
}

} // namespace morvo
