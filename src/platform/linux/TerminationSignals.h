#pragma once

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <functional>
#include <memory>

namespace morvo {

/// Hears the signals that ask the process to end: SIGTERM, SIGINT, SIGHUP. The first of them calls
/// the handler with its number from the event loop; a second one of its kind ends the process at
/// once, as it would without this. A signal that whoever started the process lets it ignore stays
/// ignored.
///
/// Belongs to the main thread; at most one exists at a time. Destroying it brings the former
/// behaviour back.
class TerminationSignals {
public:
  explicit TerminationSignals(std::function<void(int number)> onSignal);
  TerminationSignals(const TerminationSignals &) = delete;
  TerminationSignals &operator=(const TerminationSignals &) = delete;
  ~TerminationSignals();

private:
  static constexpr std::array numbers{SIGTERM, SIGINT, SIGHUP};

  void listen();
  void hear();

  std::function<void(int number)> m_onSignal;
  std::array<int, 2> m_pipe{-1, -1};
  std::array<struct sigaction, numbers.size()> m_before{};
  std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace morvo
