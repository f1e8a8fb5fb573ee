#pragma once

#include <QStringList>

#include <functional>

namespace morvo {

/// Makes one process of a user and home folder the first: later starts hand their words over to it
/// and end. Main thread.
class SingleInstance {
public:
  enum class Role {
    first,       ///< This process is the running instance.
    handedOver,  ///< Another one is, and it has taken the words.
    unreachable, ///< Another one is, but it did not take the words: end, and say so.
    unsettled,   ///< Who is first cannot be told on this system; go on as a lone instance.
  };

  virtual ~SingleInstance() = default;

  /// Settles the role once, at start. Words handed over arrive in the first instance's handler.
  [[nodiscard]] virtual Role settle(const QStringList &words) = 0;
  /// Called in the first instance with the words of each later start.
  virtual void onWords(std::function<void(QStringList)> handler) = 0;
};

} // namespace morvo
