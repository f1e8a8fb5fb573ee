#include "platform/linux/TerminationSignals.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace morvo {
namespace {

/// Where the handler writes; all it may do is to write.
std::atomic<int> writingEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free);

void tell(int number) {
  const int before = errno;
  const auto byte = static_cast<char>(number);
  // A full pipe has told already.
  static_cast<void>(::write(writingEnd.load(), &byte, 1) == 1);
  errno = before;
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void(int number)> onSignal)
    : m_onSignal(std::move(onSignal)) {
  // Without a pipe the signals end the process as they always do.
  if (::pipe2(m_pipe.data(), O_CLOEXEC | O_NONBLOCK) == 0) {
    listen();
  }
}

TerminationSignals::~TerminationSignals() {
  if (!m_notifier) {
    return;
  }
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    ::sigaction(numbers[i], &m_before[i], nullptr);
  }
  writingEnd = -1;
  m_notifier.reset();
  ::close(m_pipe[0]);
  ::close(m_pipe[1]);
}

void TerminationSignals::listen() {
  m_notifier = std::make_unique<QSocketNotifier>(m_pipe[0], QSocketNotifier::Read);
  QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { hear(); });
  writingEnd = m_pipe[1];
  struct sigaction action{};
  action.sa_handler = tell;
  action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    ::sigaction(numbers[i], nullptr, &m_before[i]);
    if (m_before[i].sa_handler != SIG_IGN) {
      ::sigaction(numbers[i], &action, nullptr);
    }
  }
}

void TerminationSignals::hear() {
  char number = 0;
  while (::read(m_pipe[0], &number, 1) == 1) {
  }
  if (number != 0) {
    m_onSignal(number);
  }
}

} // namespace morvo
