#pragma once

#include "support/RunUntil.h"

#include <QCoroTask>

#include <memory>
#include <optional>
#include <utility>

namespace morvo::test {

/// The value of a coroutine that runs meanwhile, for tests that watch it.
template <typename T> class Awaited {
public:
  explicit Awaited(QCoro::Task<T> task) { collect(std::move(task), m_value); }

  [[nodiscard]] bool isDone() const { return m_value->has_value(); }
  /// Runs the event loop until the value is there; nothing when that takes too long.
  [[nodiscard]] std::optional<T> wait() const {
    static_cast<void>(runUntil([this] { return isDone(); }));
    return *m_value;
  }

private:
  static QCoro::Task<> collect(QCoro::Task<T> task, std::shared_ptr<std::optional<T>> value) {
    value->emplace(co_await std::move(task));
  }

  std::shared_ptr<std::optional<T>> m_value = std::make_shared<std::optional<T>>();
};

} // namespace morvo::test
