#pragma once

#include <QObject>

#include <type_traits>

namespace morvo::test {

/// How often a signal was sent.
class SignalCount : public QObject {
  Q_OBJECT

public:
  template <typename Sender, typename Signal>
    requires(!std::is_convertible_v<Signal, const char *>)
  SignalCount(const Sender *sender, Signal signal) {
    connect(sender, signal, this, &SignalCount::count);
  }
  SignalCount(const QObject *sender, const char *signal) {
    connect(sender, signal, this, SLOT(count()));
  }

  [[nodiscard]] int value() const { return m_value; }
  void clear() { m_value = 0; }

public Q_SLOTS:
  void count() { ++m_value; }

private:
  int m_value = 0;
};

} // namespace morvo::test
