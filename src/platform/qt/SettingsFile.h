#pragma once

#include "platform/SettingsStore.h"

#include <QSettings>

#include <mutex>

namespace morvo {

/// The settings as an INI file in the user's configuration folder. Each read looks whether another
/// process changed the file; each write is on disk when it returns, unless the file cannot be
/// written: then the value holds for this process. The file knows no booleans or numbers, so they
/// are texts ("true", "2.5") from the moment they are set. Thread-safe.
class SettingsFile final : public SettingsStore {
public:
  /// `path` is the file; it is created with the first write, with its folder, for the user alone.
  explicit SettingsFile(const QString &path);

  [[nodiscard]] std::optional<QVariant> object(const QString &key) const override;
  void set(const QString &key, const QVariant &value) override;
  void remove(const QString &key) override;

private:
  void prepareFile() const;

  mutable std::mutex m_mutex;
  mutable QSettings m_file;
};

} // namespace morvo
