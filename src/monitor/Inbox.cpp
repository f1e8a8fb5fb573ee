#include "monitor/Inbox.h"

#include "monitor/InboxWatcher.h"
#include "monitor/SignalMailbox.h"

#include <utility>

namespace morvo {

Inbox::Inbox(HomeFolder home, Environment environment, const Clock &clock)
    : m_home(std::move(home)), m_environment(std::move(environment)), m_clock(&clock) {}

Inbox::~Inbox() = default;

void Inbox::start(Receiver receiver) {
  m_mailbox = std::make_unique<SignalMailbox>(*m_clock, std::move(receiver));
  m_watcher = std::make_unique<InboxWatcher>(m_home, m_environment, m_mailbox->sender());
  m_watcher->start();
}

} // namespace morvo
