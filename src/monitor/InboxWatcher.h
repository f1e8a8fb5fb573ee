#pragma once

#include "base/Environment.h"
#include "monitor/InboxReader.h"
#include "platform/HomeFolder.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace morvo {

/// Watches the inbox of a home folder by polling it, on a thread of its own: one look at the file's
/// size each period, the file is opened only when the size changed.
///
/// The receiver is called on the watcher's thread. Destroying the watcher requests a stop, which a
/// waiting receiver sees, and waits for the thread; it never waits for the period. Must not be
/// destroyed from within the receiver.
class InboxWatcher {
public:
  static constexpr std::chrono::milliseconds pollPeriod{1500};

  /// Nothing runs yet. With `MORVO_DEBUG` at "1" each step is told on standard error.
  InboxWatcher(HomeFolder home, const Environment &environment, InboxReader::Receiver onSignals,
               std::chrono::milliseconds period = pollPeriod);
  InboxWatcher(const InboxWatcher &) = delete;
  InboxWatcher &operator=(const InboxWatcher &) = delete;
  ~InboxWatcher();

  /// Creates the inbox if it is missing and begins to watch: what is in the file when this returns
  /// is never handed over, what is appended later is, first one period from now. Called once.
  void start();

private:
  void run(const std::stop_token &stop);
  void waitUntil(std::chrono::steady_clock::time_point due, const std::stop_token &stop);

  HomeFolder m_home;
  std::chrono::milliseconds m_period;
  std::mutex m_mutex;
  std::condition_variable_any m_stopped;
  /// Used by the thread alone once it runs.
  InboxReader m_reader;
  std::jthread m_thread;
};

} // namespace morvo
