#pragma once

#include "base/Clock.h"
#include "base/Environment.h"
#include "monitor/SignalSource.h"
#include "platform/HomeFolder.h"

#include <memory>

namespace morvo {

class InboxWatcher;
class SignalMailbox;

/// The inbox as a source of signals: a watcher reads it on a thread of its own, a mailbox brings
/// its signals to the thread that owns this object.
class Inbox final : public SignalSource {
public:
  /// `clock` must outlive the inbox. With `MORVO_DEBUG` at "1" each step is told on standard error.
  Inbox(HomeFolder home, Environment environment, const Clock &clock);
  ~Inbox() override;

  void start(Receiver receiver) override;

private:
  HomeFolder m_home;
  Environment m_environment;
  const Clock *m_clock;
  // The watcher goes first: it posts to the mailbox.
  std::unique_ptr<SignalMailbox> m_mailbox;
  std::unique_ptr<InboxWatcher> m_watcher;
};

} // namespace morvo
