#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstdint>
#include <expected>
#include <functional>
#include <optional>

namespace morvo {

/// Why a file operation failed.
struct FileError {
  /// The system's error number.
  int code = 0;
  /// What was tried: "open", "write", …
  QString operation;
  QString path;

  /// "open /a/b: Permission denied", for diagnostics. Never holds file content.
  [[nodiscard]] QString message() const;
  bool operator==(const FileError &) const = default;
};

/// The file operations of the system, one method a call, so that a test double can fail any of
/// them. Thread-safe. Descriptors returned belong to the caller, who closes them with `close`.
class FileLayer {
public:
  template <typename T> using Result = std::expected<T, FileError>;

  struct Status {
    bool isRegularFile = false;
    bool isSymbolicLink = false;
    std::uint64_t size = 0;
    std::uint32_t mode = 0; ///< Permission bits.
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
  };

  virtual ~FileLayer() = default;

  /// `read` refuses files of more bytes.
  static constexpr std::uint64_t largestRead = std::uint64_t{64} << 20U;

  /// The whole file, links followed. Never waits: what is no regular file is refused (EISDIR,
  /// EINVAL), and so is a file beyond `largestRead` (EFBIG).
  [[nodiscard]] virtual Result<QByteArray> read(const QString &path) = 0;
  /// The same, handed over piece by piece, so that a large file takes little memory.
  using Take = std::function<void(QByteArrayView piece)>;
  [[nodiscard]] virtual Result<void> readPieces(const QString &path, const Take &take) = 0;
  /// Of the path itself: a symbolic link is not followed.
  [[nodiscard]] virtual Result<Status> status(const QString &path) = 0;
  /// The text of the symbolic link.
  [[nodiscard]] virtual Result<QString> linkTarget(const QString &path) = 0;
  /// Creates a file that must not exist yet, for writing.
  [[nodiscard]] virtual Result<int> create(const QString &path, std::uint32_t mode) = 0;
  /// Writes all of `bytes`.
  [[nodiscard]] virtual Result<void> write(int descriptor, const QByteArray &bytes) = 0;
  [[nodiscard]] virtual Result<void> setMode(int descriptor, std::uint32_t mode) = 0;
  [[nodiscard]] virtual Result<void> setOwner(int descriptor, std::uint32_t owner,
                                              std::uint32_t group) = 0;
  /// Waits until the content has reached the disk.
  [[nodiscard]] virtual Result<void> sync(int descriptor) = 0;
  [[nodiscard]] virtual Result<void> close(int descriptor) = 0;
  [[nodiscard]] virtual Result<void> rename(const QString &from, const QString &to) = 0;
  [[nodiscard]] virtual Result<void> remove(const QString &path) = 0;
  /// Creates the directory and its parents; an existing one is no failure and keeps its mode.
  [[nodiscard]] virtual Result<void> makeDirectories(const QString &path, std::uint32_t mode) = 0;
};

} // namespace morvo
