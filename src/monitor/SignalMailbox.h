#pragma once

#include "base/Clock.h"
#include "monitor/InboxReader.h"

#include <functional>
#include <memory>

namespace morvo {

/// Hands batches of signals from another thread to the event loop of the thread that owns the
/// mailbox: one batch a call, in the order they were posted.
///
/// What is in flight is bounded: a sender that is too fast waits for the owner. The owner is woken
/// once for many batches, and gives way to its other events after `turnBudget`.
///
/// Constructed, used and destroyed on the owner's thread. Batches not handled by then are dropped.
class SignalMailbox {
public:
  using Handler = std::function<void(QList<QJsonObject>)>;

  /// At most so many batches are in flight,
  static constexpr std::size_t capacity = 1024;
  /// and about so many bytes of them; one batch may be larger when it is alone.
  static constexpr std::size_t byteCapacity = std::size_t{64} * 1024 * 1024;
  /// How long batches are handled before other events get their turn.
  static constexpr std::chrono::milliseconds turnBudget{8};

  /// `clock` must outlive the mailbox. `handler` may destroy the mailbox and may run an event loop
  /// of its own; the next batches are then handled inside that one.
  SignalMailbox(const Clock &clock, Handler handler);
  SignalMailbox(const SignalMailbox &) = delete;
  SignalMailbox &operator=(const SignalMailbox &) = delete;
  ~SignalMailbox();

  /// Posts to this mailbox, from any thread but the owner's. Waits while too much is in flight,
  /// until a stop is requested or the mailbox is gone: the batch is then dropped. May be called,
  /// and kept, beyond the mailbox's life.
  [[nodiscard]] InboxReader::Receiver sender() const;

private:
  class Owner;
  struct State;

  std::shared_ptr<State> m_state;
};

} // namespace morvo
