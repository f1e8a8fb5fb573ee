#include "platform/qt/SettingsFile.h"

#include "base/SystemFileLayer.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

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

/// Keeps other processes out of a step while it lives. Where it cannot be had (no such folder, no
/// locks on its file system) the step happens without it.
class FolderLock {
public:
  explicit FolderLock(const QString &folder)
      : m_descriptor(
            ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    while (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX) != 0 && errno == EINTR) {
    }
  }
  FolderLock(const FolderLock &) = delete;
  FolderLock &operator=(const FolderLock &) = delete;
  ~FolderLock() {
    if (m_descriptor >= 0) {
      ::close(m_descriptor);
    }
  }

private:
  int m_descriptor;
};

} // namespace

SettingsFile::SettingsFile(const QString &path) : m_file(path, QSettings::IniFormat) {}

std::optional<QVariant> SettingsFile::object(const QString &key) const {
  const std::scoped_lock lock(m_mutex);
  sync();
  const QVariant value = m_file.value(key);
  return value.isValid() ? std::optional(value) : std::nullopt;
}

void SettingsFile::set(const QString &key, const QVariant &value) {
  const std::scoped_lock lock(m_mutex);
  prepareFile();
  m_file.setValue(key, asInFile(value));
  sync();
}

void SettingsFile::remove(const QString &key) {
  const std::scoped_lock lock(m_mutex);
  m_file.remove(key);
  sync();
}

void SettingsFile::atOnce(const std::function<void()> &change) {
  const std::scoped_lock lock(m_mutex);
  const FolderLock others(QFileInfo(m_file.fileName()).path());
  m_file.sync();
  m_isAtOnce = true;
  change();
  m_isAtOnce = false;
  // The file is replaced as a whole, with all that the step has changed.
  m_file.sync();
}

void SettingsFile::sync() const {
  if (!m_isAtOnce) {
    m_file.sync();
  }
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
