#pragma once

#include "platform/SettingsStore.h"

#include <QSettings>

#include <mutex>

namespace morvo {

/// The settings as an INI file in the user's configuration folder. Each read looks whether another
/// process changed the file; each write is on disk when it returns. Thread-safe.
class SettingsFile final : public SettingsStore {
public:
  /// `path` is the file; its folder is created with the first write.
  explicit SettingsFile(const QString &path);

  [[nodiscard]] std::optional<QVariant> object(const QString &key) const override;
  void set(const QString &key, const QVariant &value) override;
  void remove(const QString &key) override;

private:
  mutable std::mutex m_mutex;
  mutable QSettings m_file;
};

} // namespace morvo
