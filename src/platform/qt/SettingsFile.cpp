#include "platform/qt/SettingsFile.h"

#include "base/SystemFileLayer.h"

#include <QFileInfo>

namespace morvo {
namespace {

constexpr std::uint32_t ownerOnlyFolder = 0700;
constexpr std::uint32_t ownerOnlyFile = 0600;

/// QSettings keeps the type of a value until the file is read again; what reads see must not
/// depend on who wrote it.
QVariant asInFile(const QVariant &value) {
  switch (value.typeId()) {
  case QMetaType::Bool:
  case QMetaType::Int:
  case QMetaType::UInt:
  case QMetaType::LongLong:
  case QMetaType::ULongLong:
  case QMetaType::Double:
  case QMetaType::Float:
    return value.toString();
  default:
    return value;
  }
}

} // namespace

SettingsFile::SettingsFile(const QString &path) : m_file(path, QSettings::IniFormat) {}

std::optional<QVariant> SettingsFile::object(const QString &key) const {
  const std::scoped_lock lock(m_mutex);
  m_file.sync();
  const QVariant value = m_file.value(key);
  return value.isValid() ? std::optional(value) : std::nullopt;
}

void SettingsFile::set(const QString &key, const QVariant &value) {
  const std::scoped_lock lock(m_mutex);
  prepareFile();
  m_file.setValue(key, asInFile(value));
  m_file.sync();
}

void SettingsFile::remove(const QString &key) {
  const std::scoped_lock lock(m_mutex);
  m_file.remove(key);
  m_file.sync();
}

void SettingsFile::prepareFile() const {
  SystemFileLayer files;
  const QString path = m_file.fileName();
  if (!files.makeDirectories(QFileInfo(path).path(), ownerOnlyFolder)) {
    return;
  }
  // QSettings keeps the mode of a file that is there.
  if (const auto created = files.create(path, ownerOnlyFile)) {
    static_cast<void>(files.close(*created));
  }
}

} // namespace morvo
