#include "base/AtomicFile.h"

#include <QDir>
#include <QFileInfo>

#include <atomic>
#include <cerrno>
#include <unistd.h>

namespace morvo::AtomicFile {
namespace {

/// As many links as the kernel follows before it reports a loop.
constexpr int longestLinkChain = 40;
/// Names tried when stray temporary files of dead processes are in the way.
constexpr int nameAttempts = 100;
/// A temporary file is nobody else's business until it has its final mode.
constexpr std::uint32_t temporaryMode = 0600;

FileLayer::Result<QString> resolveLinks(FileLayer &files, QString path) {
  for (int step = 0; step < longestLinkChain; ++step) {
    const auto status = files.status(path);
    if (!status || !status->isSymbolicLink) {
      return path;
    }
    auto target = files.linkTarget(path);
    if (!target) {
      return std::unexpected(target.error());
    }
    path = QDir::isAbsolutePath(*target) ? *target : QDir(QFileInfo(path).path()).filePath(*target);
  }
  return std::unexpected(FileError{ELOOP, QStringLiteral("resolve"), path});
}

struct Temporary {
  QString path;
  int descriptor = -1;
};

FileLayer::Result<Temporary> createTemporary(FileLayer &files, const QString &target) {
  static std::atomic<unsigned> counter{0};
  const QFileInfo info(target);
  for (int attempt = 0;; ++attempt) {
    const QString name = QStringLiteral(".%1.%2-%3.tmp")
                             .arg(info.fileName().left(100))
                             .arg(::getpid())
                             .arg(counter.fetch_add(1));
    QString path = QDir(info.path()).filePath(name);
    auto descriptor = files.create(path, temporaryMode);
    if (descriptor) {
      return Temporary{std::move(path), *descriptor};
    }
    if (descriptor.error().code != EEXIST || attempt == nameAttempts) {
      return std::unexpected(descriptor.error());
    }
  }
}

FileLayer::Result<void> fill(FileLayer &files, int descriptor, const QByteArray &content,
                             const FileLayer::Result<FileLayer::Status> &old,
                             const Options &options) {
  if (auto written = files.write(descriptor, content); !written) {
    return written;
  }
  if (old && (old->owner != ::geteuid() || old->group != ::getegid())) {
    // Only a privileged process may give a file away; anyone else's file becomes the writer's.
    static_cast<void>(files.setOwner(descriptor, old->owner, old->group));
  }
  const auto mode = old && !options.forceMode ? old->mode : options.mode;
  if (auto set = files.setMode(descriptor, mode); !set) {
    return set;
  }
  return files.sync(descriptor);
}

} // namespace

FileLayer::Result<void> write(FileLayer &files, const QString &path, const QByteArray &content,
                              const Options &options) {
  const auto target = resolveLinks(files, path);
  if (!target) {
    return std::unexpected(target.error());
  }
  if (auto made = files.makeDirectories(QFileInfo(*target).path(), options.directoryMode); !made) {
    return made;
  }
  const auto old = files.status(*target);
  const auto temporary = createTemporary(files, *target);
  if (!temporary) {
    return std::unexpected(temporary.error());
  }
  auto outcome = fill(files, temporary->descriptor, content, old, options);
  if (auto closed = files.close(temporary->descriptor); outcome && !closed) {
    outcome = closed;
  }
  if (outcome) {
    outcome = files.rename(temporary->path, *target);
  }
  if (!outcome) {
    // The first failure is the one to report; a temporary file that cannot be removed harms no one.
    static_cast<void>(files.remove(temporary->path));
  }
  return outcome;
}

} // namespace morvo::AtomicFile
