#pragma once

#include "platform/SettingsStore.h"

#include <QSettings>

#include <mutex>

namespace morvo {

/// The settings as an INI file in the user's configuration folder. Each read looks whether another
/// process changed the file, by its length and the time of its change, which a quick change of the
/// same length may share; each write is on disk when it returns, unless the file cannot be
/// written: then the value holds for this process. The file knows no booleans or numbers, so they
/// are texts ("true", "2.5") from the moment they are set. Thread-safe.
class SettingsFile final : public SettingsStore {
public:
  /// `path` is the file; it is created with the first write, with its folder, for the user alone.
  explicit SettingsFile(const QString &path);

  [[nodiscard]] std::optional<QVariant> object(const QString &key) const override;
  void set(const QString &key, const QVariant &value) override;
  void remove(const QString &key) override;
  void atOnce(const std::function<void()> &change) override;

private:
  /// Exchanges the changes with the file, unless they belong to a step that is not over.
  void sync() const;
  void prepareFile() const;

  mutable std::recursive_mutex m_mutex;
  mutable QSettings m_file;
  bool m_isAtOnce = false;
};

} // namespace morvo
