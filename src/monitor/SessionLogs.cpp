#include "monitor/SessionLogs.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace morvo::SessionLogs {
namespace {

constexpr auto recently = std::chrono::seconds(900);
const QByteArray extension = QByteArrayLiteral(".jsonl");

struct FolderCloser {
  void operator()(DIR *folder) const { ::closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, FolderCloser>;

/// What stands in one folder, by name.
struct Contents {
  std::vector<LogFile> logs;
  std::vector<QByteArray> folders;
};

bool isLogName(QByteArrayView name) {
  return name.endsWith(extension) && name.size() > extension.size();
}

WallTime modificationTime(const struct stat &status) {
  const auto sinceEpoch = std::chrono::seconds(status.st_mtim.tv_sec) +
                          std::chrono::nanoseconds(status.st_mtim.tv_nsec);
  return WallTime(std::chrono::floor<std::chrono::milliseconds>(sinceEpoch));
}

bool isSelfOrParent(QByteArrayView name) { return name == "." || name == ".."; }

/// Adds the entry where it belongs; a link, and what cannot be looked at, nowhere.
void sortIn(Contents &contents, const QByteArray &folder, int descriptor, const dirent &entry) {
  const QByteArrayView name(static_cast<const char *>(entry.d_name));
  if (isSelfOrParent(name)) {
    return;
  }
  const QByteArray path = folder + '/' + name.toByteArray();
  if (entry.d_type == DT_DIR) {
    contents.folders.push_back(path);
    return;
  }
  const bool mayBeLog = entry.d_type == DT_REG && isLogName(name);
  struct stat status{};
  if ((!mayBeLog && entry.d_type != DT_UNKNOWN) ||
      ::fstatat(descriptor, name.data(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
    return;
  }
  if (S_ISDIR(status.st_mode)) {
    contents.folders.push_back(path);
  } else if (S_ISREG(status.st_mode) && isLogName(name)) {
    contents.logs.push_back({.path = path, .modifiedAt = modificationTime(status)});
  }
}

Contents contentsOf(const QByteArray &path) {
  Contents contents;
  const OpenFolder folder(::opendir(path.constData()));
  if (!folder) {
    return contents;
  }
  while (const dirent *entry = ::readdir(folder.get())) {
    sortIn(contents, path, ::dirfd(folder.get()), *entry);
  }
  std::ranges::sort(contents.logs, {}, &LogFile::path);
  std::ranges::sort(contents.folders);
  return contents;
}

class Descriptor {
public:
  explicit Descriptor(int value) : m_value(value) {}
  Descriptor(const Descriptor &) = delete;
  Descriptor &operator=(const Descriptor &) = delete;
  ~Descriptor() {
    if (m_value >= 0) {
      ::close(m_value);
    }
  }
  [[nodiscard]] int value() const { return m_value; }

private:
  int m_value;
};

} // namespace

std::vector<LogFile> recentFiles(const QString &root, WallTime now, const std::stop_token &stop) {
  std::vector<LogFile> found;
  std::vector<QByteArray> folders{QFile::encodeName(root)};
  while (!folders.empty() && !stop.stop_requested()) {
    const QByteArray folder = std::exchange(folders.back(), {});
    folders.pop_back();
    Contents contents = contentsOf(folder);
    for (LogFile &log : contents.logs) {
      if (now - log.modifiedAt > recently) {
        continue;
      }
      found.push_back(std::move(log));
      if (found.size() == mostFiles) {
        return found;
      }
    }
    folders.insert(folders.end(), contents.folders.rbegin(), contents.folders.rend());
  }
  return found;
}

QByteArray tail(const QByteArray &path, qsizetype bytes) {
  // The entry may have become something else since it was found: a pipe would wait for a writer.
  const Descriptor file(
      ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status{};
  if (file.value() < 0 || ::fstat(file.value(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return {};
  }
  QByteArray text(std::min<qsizetype>(bytes, status.st_size), Qt::Uninitialized);
  const off_t start = status.st_size - text.size();
  qsizetype filled = 0;
  while (filled < text.size()) {
    const auto count = ::pread(file.value(), text.data() + filled,
                               static_cast<std::size_t>(text.size() - filled), start + filled);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      break;
    }
    filled += count;
  }
  text.truncate(filled);
  return text;
}

} // namespace morvo::SessionLogs
