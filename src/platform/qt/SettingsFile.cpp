#include "platform/qt/SettingsFile.h"

namespace morvo {

SettingsFile::SettingsFile(const QString &path) : m_file(path, QSettings::IniFormat) {}

std::optional<QVariant> SettingsFile::object(const QString &key) const {
  const std::scoped_lock lock(m_mutex);
  m_file.sync();
  const QVariant value = m_file.value(key);
  return value.isValid() ? std::optional(value) : std::nullopt;
}

void SettingsFile::set(const QString &key, const QVariant &value) {
  const std::scoped_lock lock(m_mutex);
  m_file.setValue(key, value);
  m_file.sync();
}

void SettingsFile::remove(const QString &key) {
  const std::scoped_lock lock(m_mutex);
  m_file.remove(key);
  m_file.sync();
}

} // namespace morvo
