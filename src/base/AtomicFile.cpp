#include "base/AtomicFile.h"

#include <QDir>
#include <QFileInfo>

#include <atomic>
#include <cerrno>
#include <functional>
#include <unistd.h>
#include <utility>

namespace morvo::AtomicFile {
namespace {

/// As many links as the kernel follows before it reports a loop.
constexpr int longestLinkChain = 40;
/// Names tried when stray temporary files of dead processes are in the way.
constexpr int nameAttempts = 100;
/// A temporary file is nobody else's business until it has its final mode.
constexpr std::uint32_t temporaryMode = 0600;

bool isAbsence(const FileError &error) { return error.code == ENOENT || error.code == ENOTDIR; }

/// The status; nothing when nothing is there. Any other failure must not pass for absence: a link
/// or a file of the user's may be behind it.
FileLayer::Result<std::optional<FileLayer::Status>> statusIfPresent(FileLayer &files,
                                                                    const QString &path) {
  auto status = files.status(path);
  if (status) {
    return *status;
  }
  if (isAbsence(status.error())) {
    return std::nullopt;
  }
  return std::unexpected(status.error());
}

/// The path behind at most `chain` links.
FileLayer::Result<QString> resolveLinks(FileLayer &files, QString path, int chain) {
  for (int step = 0; step <= chain; ++step) {
    const auto status = statusIfPresent(files, path);
    if (!status) {
      return std::unexpected(status.error());
    }
    const auto &found = *status;
    if (!found || !found->isSymbolicLink) {
      return path;
    }
    if (step == chain) {
      break;
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
                             .arg(info.fileName().left(100), QString::number(::getpid()),
                                  QString::number(counter.fetch_add(1)));
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
                             const std::optional<FileLayer::Status> &old, const Options &options) {
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
  return options.durable ? files.sync(descriptor) : FileLayer::Result<void>();
}

/// Asked right before the file is replaced; false leaves it alone.
using Condition = std::function<FileLayer::Result<bool>()>;

/// Fills the temporary file and puts it into the target's place; false when the condition does not
/// hold. Whatever but true comes out, the temporary file is left for the caller to remove.
FileLayer::Result<bool> putInPlace(FileLayer &files, const Temporary &temporary,
                                   const QString &target, const QByteArray &content,
                                   const std::optional<FileLayer::Status> &old,
                                   const Options &options, const Condition &condition) {
  auto outcome = fill(files, temporary.descriptor, content, old, options);
  if (auto closed = files.close(temporary.descriptor); outcome && !closed) {
    outcome = closed;
  }
  if (!outcome) {
    return std::unexpected(outcome.error());
  }
  if (auto holds = condition(); !holds || !*holds) {
    return holds;
  }
  if (auto renamed = files.rename(temporary.path, target); !renamed) {
    return std::unexpected(renamed.error());
  }
  return true;
}

FileLayer::Result<bool> writeIf(FileLayer &files, const QString &path, const QByteArray &content,
                                const Options &options, const Condition &condition) {
  const auto target = resolveLinks(files, path, options.followLinks ? longestLinkChain : 0);
  if (!target) {
    return std::unexpected(target.error());
  }
  if (auto made = files.makeDirectories(QFileInfo(*target).path(), options.directoryMode); !made) {
    return std::unexpected(made.error());
  }
  const auto old = statusIfPresent(files, *target);
  if (!old) {
    return std::unexpected(old.error());
  }
  const auto temporary = createTemporary(files, *target);
  if (!temporary) {
    return std::unexpected(temporary.error());
  }
  auto outcome = putInPlace(files, *temporary, *target, content, *old, options, condition);
  if (!outcome || !*outcome) {
    // The first failure is the one to report; a temporary file that cannot be removed harms no one.
    static_cast<void>(files.remove(temporary->path));
  }
  return outcome;
}

} // namespace

FileLayer::Result<void> write(FileLayer &files, const QString &path, const QByteArray &content,
                              const Options &options) {
  const auto written = writeIf(files, path, content, options, [] { return true; });
  return written ? FileLayer::Result<void>() : std::unexpected(written.error());
}

FileLayer::Result<bool> replaceIfUnchanged(FileLayer &files, const QString &path,
                                           const std::optional<QByteArray> &expected,
                                           const QByteArray &content, const Options &options) {
  return writeIf(files, path, content, options, [&]() -> FileLayer::Result<bool> {
    const auto now = present(files, path);
    return now ? FileLayer::Result<bool>(*now == expected) : std::unexpected(now.error());
  });
}

FileLayer::Result<std::optional<QByteArray>> present(FileLayer &files, const QString &path) {
  auto content = files.read(path);
  if (content) {
    return std::move(*content);
  }
  if (isAbsence(content.error())) {
    return std::nullopt;
  }
  return std::unexpected(content.error());
}

} // namespace morvo::AtomicFile
