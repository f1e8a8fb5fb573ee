#pragma once

#include "base/SystemFileLayer.h"

#include <functional>
#include <utility>

namespace morvo::test {

/// The real file system, except that the Nth call fails and `sync` does not wait for the disk.
/// Sweep N over a writer to see that the old file survives a failure at every step.
class FailingFileLayer final : public FileLayer {
public:
  enum class Fault {
    none,
    error,     ///< The call fails with the error number and does nothing.
    tornWrite, ///< As `error`, but a failing write leaves half of its bytes.
    crash,     ///< The call and all later ones do nothing and fail: the process died.
  };

  /// Lets the call with this number fail, counted from 1.
  void failAt(int call, Fault fault, int errorNumber);
  /// Calls this before each call with its name, so that a test can change things behind the
  /// writer's back: "open", "stat", "readlink", "create", "write", "chmod", "chown", "fsync",
  /// "close", "rename", "remove", "mkdir".
  void beforeEach(std::function<void(QStringView)> interference) {
    m_interference = std::move(interference);
  }
  /// Calls made since the last `failAt`.
  [[nodiscard]] int calls() const { return m_calls; }

  [[nodiscard]] Result<QByteArray> read(const QString &path) override;
  [[nodiscard]] Result<void> readPieces(const QString &path, const Take &take) override;
  [[nodiscard]] Result<Status> status(const QString &path) override;
  [[nodiscard]] Result<QString> linkTarget(const QString &path) override;
  [[nodiscard]] Result<int> create(const QString &path, std::uint32_t mode) override;
  [[nodiscard]] Result<void> write(int descriptor, const QByteArray &bytes) override;
  [[nodiscard]] Result<void> setMode(int descriptor, std::uint32_t mode) override;
  [[nodiscard]] Result<void> setOwner(int descriptor, std::uint32_t owner,
                                      std::uint32_t group) override;
  [[nodiscard]] Result<void> sync(int descriptor) override;
  [[nodiscard]] Result<void> close(int descriptor) override;
  [[nodiscard]] Result<void> rename(const QString &from, const QString &to) override;
  [[nodiscard]] Result<void> remove(const QString &path) override;
  [[nodiscard]] Result<void> makeDirectories(const QString &path, std::uint32_t mode) override;

private:
  /// Counts a call; the error when it is to fail.
  std::optional<FileError> next(const char *operation, const QString &path);

  SystemFileLayer m_files;
  int m_calls = 0;
  int m_failing = 0;
  Fault m_fault = Fault::none;
  int m_error = 0;
  std::function<void(QStringView)> m_interference = [](QStringView) {};
};

} // namespace morvo::test
