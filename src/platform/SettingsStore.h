#pragma once

#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

namespace morvo {

/// The user's key-value settings, shared with other processes: each read sees the latest value, so
/// a change acts at its next use. No schema; a key that was never written is absent. Thread-safe.
class SettingsStore {
public:
  virtual ~SettingsStore() = default;

  /// The stored object; nothing when the key was never written.
  [[nodiscard]] virtual std::optional<QVariant> object(const QString &key) const = 0;
  virtual void set(const QString &key, const QVariant &value) = 0;
  virtual void remove(const QString &key) = 0;
  /// Calls `change`, which reads and writes keys by this object, so that it happens as one step: no
  /// other process sees a part of it or takes a step of its own in between, no other thread uses
  /// this object meanwhile, and a process that dies in it has changed nothing. Not to be nested.
  virtual void atOnce(const std::function<void()> &change) = 0;
};

} // namespace morvo
