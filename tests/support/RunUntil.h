#pragma once

#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace morvo::test {

/// How long a real service may take before the test counts as failed.
inline constexpr std::chrono::seconds serviceGuard{20};

/// Runs the event loop until the condition holds; false when it takes too long.
template <typename Condition> [[nodiscard]] bool runUntil(const Condition &condition) {
  QEventLoop events;
  QTimer poll;
  QTimer guard;
  QObject::connect(&poll, &QTimer::timeout, &events, [&] {
    if (condition()) {
      events.quit();
    }
  });
  QObject::connect(&guard, &QTimer::timeout, &events, &QEventLoop::quit);
  poll.start(std::chrono::milliseconds(1));
  guard.start(serviceGuard);
  if (!condition()) {
    events.exec();
  }
  return condition();
}

} // namespace morvo::test
