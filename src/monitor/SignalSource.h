#pragma once

#include <QJsonObject>
#include <QList>

#include <functional>

namespace morvo {

/// Where the agents' signals come from.
class SignalSource {
public:
  using Receiver = std::function<void(QList<QJsonObject>)>;

  /// Once this returns, the receiver is not called any more.
  virtual ~SignalSource() = default;

  /// Starts the deliveries: one call a batch, in order, on the thread that called `start`. Called
  /// once.
  virtual void start(Receiver receiver) = 0;
};

} // namespace morvo
