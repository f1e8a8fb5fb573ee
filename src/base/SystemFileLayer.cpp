#include "base/SystemFileLayer.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace morvo {
namespace {

constexpr std::size_t readBlock = std::size_t{1} << 16U;
constexpr std::size_t longestLink = 4096;
constexpr std::uint32_t permissionBits = 07777;

std::unexpected<FileError> failure(const char *operation, const QString &path) {
  return std::unexpected(FileError{errno, QString::fromLatin1(operation), path});
}

std::unexpected<FileError> failure(const char *operation, int descriptor) {
  return failure(operation, QStringLiteral("descriptor %1").arg(descriptor));
}

std::unexpected<FileError> failure(int code, const char *operation, const QString &path) {
  return std::unexpected(FileError{code, QString::fromLatin1(operation), path});
}

/// The size that a regular file tells; some files of the system tell 0 and hold more.
FileLayer::Result<std::uint64_t> readableSize(int descriptor, const QString &path) {
  struct stat info{};
  if (::fstat(descriptor, &info) != 0) {
    return failure("stat", path);
  }
  if (!S_ISREG(info.st_mode)) {
    return failure(S_ISDIR(info.st_mode) ? EISDIR : EINVAL, "read", path);
  }
  return static_cast<std::uint64_t>(info.st_size);
}

/// Hands over what there is to read, up to the most that may be.
FileLayer::Result<void> readOn(int descriptor, const QString &path, const FileLayer::Take &take) {
  std::uint64_t done = 0;
  QByteArray block(static_cast<qsizetype>(readBlock), Qt::Uninitialized);
  // The file may grow under the reader.
  while (done <= FileLayer::largestRead) {
    const ssize_t count = ::read(descriptor, block.data(), readBlock);
    if (count == 0) {
      return {};
    }
    if (count > 0) {
      done += static_cast<std::uint64_t>(count);
      take(QByteArrayView(block).first(count));
    } else if (errno != EINTR) {
      return failure("read", path);
    }
  }
  return failure(EFBIG, "read", path);
}

/// Opens a file, tells its size and hands over its bytes.
FileLayer::Result<void> readFile(const QString &path,
                                 const std::function<void(std::uint64_t size)> &prepare,
                                 const FileLayer::Take &take) {
  // O_NONBLOCK is for a pipe, whose opening would wait for a writer.
  const int descriptor =
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
  if (descriptor < 0) {
    return failure("open", path);
  }
  const auto size = readableSize(descriptor, path);
  FileLayer::Result<void> result;
  if (!size) {
    result = std::unexpected(size.error());
  } else if (*size > FileLayer::largestRead) {
    result = failure(EFBIG, "read", path);
  } else {
    prepare(*size);
    result = readOn(descriptor, path, take);
  }
  ::close(descriptor);
  return result;
}

} // namespace

FileLayer::Result<QByteArray> SystemFileLayer::read(const QString &path) {
  QByteArray content;
  const auto result = readFile(
      path, [&content](std::uint64_t size) { content.reserve(static_cast<qsizetype>(size)); },
      [&content](QByteArrayView piece) { content.append(piece); });
  return result ? Result<QByteArray>(std::move(content)) : std::unexpected(result.error());
}

FileLayer::Result<void> SystemFileLayer::readPieces(const QString &path, const Take &take) {
  return readFile(path, [](std::uint64_t) {}, take);
}

FileLayer::Result<FileLayer::Status> SystemFileLayer::status(const QString &path) {
  struct stat info{};
  if (::lstat(QFile::encodeName(path).constData(), &info) != 0) {
    return failure("stat", path);
  }
  return Status{.isRegularFile = S_ISREG(info.st_mode),
                .isSymbolicLink = S_ISLNK(info.st_mode),
                .size = static_cast<std::uint64_t>(info.st_size),
                .mode = info.st_mode & permissionBits,
                .owner = info.st_uid,
                .group = info.st_gid};
}

FileLayer::Result<QString> SystemFileLayer::linkTarget(const QString &path) {
  QByteArray target(static_cast<qsizetype>(longestLink), Qt::Uninitialized);
  const ssize_t length =
      ::readlink(QFile::encodeName(path).constData(), target.data(), longestLink);
  if (length < 0) {
    return failure("readlink", path);
  }
  target.truncate(length);
  return QFile::decodeName(target);
}

FileLayer::Result<int> SystemFileLayer::create(const QString &path, std::uint32_t mode) {
  const int descriptor = ::open(QFile::encodeName(path).constData(),
                                O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, static_cast<mode_t>(mode));
  if (descriptor < 0) {
    return failure("create", path);
  }
  return descriptor;
}

FileLayer::Result<void> SystemFileLayer::write(int descriptor, const QByteArray &bytes) {
  qsizetype done = 0;
  while (done < bytes.size()) {
    const ssize_t count = ::write(descriptor, bytes.constData() + done,
                                  static_cast<std::size_t>(bytes.size() - done));
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count < 0) {
      return failure("write", descriptor);
    }
    done += count;
  }
  return {};
}

FileLayer::Result<void> SystemFileLayer::setMode(int descriptor, std::uint32_t mode) {
  if (::fchmod(descriptor, static_cast<mode_t>(mode)) != 0) {
    return failure("chmod", descriptor);
  }
  return {};
}

FileLayer::Result<void> SystemFileLayer::setOwner(int descriptor, std::uint32_t owner,
                                                  std::uint32_t group) {
  if (::fchown(descriptor, owner, group) != 0) {
    return failure("chown", descriptor);
  }
  return {};
}

FileLayer::Result<void> SystemFileLayer::sync(int descriptor) {
  if (::fsync(descriptor) != 0) {
    return failure("fsync", descriptor);
  }
  return {};
}

FileLayer::Result<void> SystemFileLayer::close(int descriptor) {
  if (::close(descriptor) != 0) {
    return failure("close", descriptor);
  }
  return {};
}

FileLayer::Result<void> SystemFileLayer::rename(const QString &from, const QString &to) {
  if (::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) != 0) {
    return failure("rename", to);
  }
  return {};
}

FileLayer::Result<void> SystemFileLayer::remove(const QString &path) {
  if (::unlink(QFile::encodeName(path).constData()) != 0) {
    return failure("remove", path);
  }
  return {};
}

FileLayer::Result<void> SystemFileLayer::makeDirectories(const QString &path, std::uint32_t mode) {
  if (QFileInfo(path).isDir()) {
    return {};
  }
  const QString parent = QFileInfo(path).path();
  if (parent != path) {
    if (auto made = makeDirectories(parent, mode); !made) {
      return made;
    }
  }
  if (::mkdir(QFile::encodeName(path).constData(), static_cast<mode_t>(mode)) != 0 &&
      (errno != EEXIST || !QFileInfo(path).isDir())) {
    return failure("mkdir", path);
  }
  return {};
}

} // namespace morvo
