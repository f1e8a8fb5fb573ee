#include "monitor/InboxWatcher.h"

#include "platform/MorvoHome.h"

#include <pthread.h>
#include <utility>

namespace morvo {
namespace {

/// As system monitors show it; the kernel keeps 15 bytes.
constexpr const char *threadName = "morvo.inbox";

} // namespace

InboxWatcher::InboxWatcher(HomeFolder home, const Environment &environment,
                           InboxReader::Receiver onSignals, std::chrono::milliseconds period)
    : m_home(std::move(home)), m_period(period),
      m_reader(MorvoHome::inbox(m_home), std::move(onSignals),
               environment.isOne(QStringLiteral("MORVO_DEBUG")),
               [this](std::chrono::milliseconds pause, const std::stop_token &stop) {
                 waitUntil(std::chrono::steady_clock::now() + pause, stop);
               }) {}

InboxWatcher::~InboxWatcher() = default;

void InboxWatcher::start() {
  Q_ASSERT(!m_thread.joinable());
  MorvoHome::ensure(m_home);
  m_reader.skipPresent();
  m_thread = std::jthread([this](const std::stop_token &stop) { run(stop); });
}

void InboxWatcher::run(const std::stop_token &stop) {
  ::pthread_setname_np(::pthread_self(), threadName);
  auto due = std::chrono::steady_clock::now();
  for (;;) {
    const auto now = std::chrono::steady_clock::now();
    // Polls keep their grid; those that a long one ran over are left out.
    due += m_period * ((now - due) / m_period + 1);
    waitUntil(due, stop);
    if (stop.stop_requested()) {
      return;
    }
    m_reader.drain(stop);
  }
}

void InboxWatcher::waitUntil(std::chrono::steady_clock::time_point due,
                             const std::stop_token &stop) {
  std::unique_lock lock(m_mutex);
  m_stopped.wait_until(lock, stop, due, [] { return false; });
}

} // namespace morvo
