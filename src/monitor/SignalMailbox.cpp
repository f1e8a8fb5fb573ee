#include "monitor/SignalMailbox.h"

#include <QCoreApplication>
#include <QEvent>
#include <QJsonArray>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace morvo {
namespace {

/// Rough cost of a value beside its text.
constexpr std::size_t valueBytes = 32;

std::size_t approximateBytes(const QJsonValue &value) {
  std::size_t sum = valueBytes;
  if (value.isString()) {
    sum += static_cast<std::size_t>(value.toString().size()) * sizeof(QChar);
  } else if (value.isArray()) {
    for (const auto &element : value.toArray()) {
      sum += approximateBytes(element);
    }
  } else if (value.isObject()) {
    const auto object = value.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
      sum += approximateBytes(entry.value()) +
             static_cast<std::size_t>(entry.key().size()) * sizeof(QChar);
    }
  }
  return sum;
}

std::size_t approximateBytes(const QList<QJsonObject> &batch) {
  std::size_t sum = 0;
  for (const QJsonObject &signal : batch) {
    sum += approximateBytes(QJsonValue(signal));
  }
  return sum;
}

} // namespace

/// Lives on the owner's thread; an event makes it handle what has come.
class SignalMailbox::Owner final : public QObject {
public:
  explicit Owner(std::weak_ptr<State> state) : m_state(std::move(state)) {}

protected:
  void customEvent(QEvent *event) override;

private:
  std::weak_ptr<State> m_state;
};

struct SignalMailbox::State {
  struct Letter {
    QList<QJsonObject> batch;
    std::size_t bytes = 0;
  };

  State(const Clock &ownersClock, Handler ownersHandler)
      : clock(&ownersClock), handler(std::move(ownersHandler)) {}

  void post(QList<QJsonObject> batch, const std::stop_token &stop);
  void handleSome();
  /// The oldest batch; nothing when there is none, or the mailbox is gone.
  std::optional<QList<QJsonObject>> take();
  [[nodiscard]] bool turnIsOver(Instant end);
  /// Under the mutex, so that the owner is not destroyed meanwhile.
  void wakeOwner();
  /// Under the mutex.
  [[nodiscard]] bool hasRoomFor(std::size_t more) const {
    return letters.empty() || (letters.size() < capacity && bytes + more <= byteCapacity);
  }

  const Clock *clock;
  Handler handler;

  std::mutex mutex;
  std::condition_variable_any room;
  // All below under the mutex.
  std::deque<Letter> letters;
  std::size_t bytes = 0;
  /// A call of the owner is on its way.
  bool ownerWoken = false;
  /// None once the mailbox is gone.
  std::unique_ptr<Owner> owner;
};

void SignalMailbox::Owner::customEvent(QEvent * /*event*/) {
  // This object may be gone when the call returns.
  if (const auto state = m_state.lock()) {
    state->handleSome();
  }
}

void SignalMailbox::State::post(QList<QJsonObject> batch, const std::stop_token &stop) {
  const std::size_t size = approximateBytes(batch);
  std::unique_lock lock(mutex);
  const bool ready = room.wait(lock, stop, [&] { return !owner || hasRoomFor(size); });
  if (!ready || !owner) {
    return;
  }
  letters.push_back({.batch = std::move(batch), .bytes = size});
  bytes += size;
  wakeOwner();
}

void SignalMailbox::State::wakeOwner() {
  if (!std::exchange(ownerWoken, true)) {
    QCoreApplication::postEvent(owner.get(), new QEvent(QEvent::User));
  }
}

void SignalMailbox::State::handleSome() {
  {
    const std::scoped_lock lock(mutex);
    ownerWoken = false;
  }
  const Instant end = clock->instant() + turnBudget;
  while (auto batch = take()) {
    handler(std::move(*batch));
    if (turnIsOver(end)) {
      return;
    }
  }
}

std::optional<QList<QJsonObject>> SignalMailbox::State::take() {
  const std::scoped_lock lock(mutex);
  if (!owner || letters.empty()) {
    return std::nullopt;
  }
  Letter letter = std::move(letters.front());
  letters.pop_front();
  bytes -= letter.bytes;
  // A waiting sender that is woken for each single place costs a thread switch a batch.
  if (letters.size() <= capacity / 2) {
    room.notify_all();
  }
  // Before the batch is handled, not after it: the handler may run an event loop.
  if (!letters.empty()) {
    wakeOwner();
  }
  return std::move(letter.batch);
}

bool SignalMailbox::State::turnIsOver(Instant end) {
  const std::scoped_lock lock(mutex);
  // The handler may just have destroyed the mailbox, and what it lent the mailbox with it.
  return !owner || clock->instant() >= end;
}

SignalMailbox::SignalMailbox(const Clock &clock, Handler handler)
    : m_state(std::make_shared<State>(clock, std::move(handler))) {
  m_state->owner = std::make_unique<Owner>(m_state);
}

SignalMailbox::~SignalMailbox() {
  std::unique_ptr<Owner> owner;
  std::deque<State::Letter> dropped;
  {
    const std::scoped_lock lock(m_state->mutex);
    owner.swap(m_state->owner);
    dropped.swap(m_state->letters);
    m_state->room.notify_all();
  }
}

InboxReader::Receiver SignalMailbox::sender() const {
  return [state = m_state](QList<QJsonObject> batch, const std::stop_token &stop) {
    state->post(std::move(batch), stop);
  };
}

} // namespace morvo
