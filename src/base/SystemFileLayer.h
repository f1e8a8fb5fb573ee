#pragma once

#include "base/FileLayer.h"

namespace morvo {

/// The real file system.
class SystemFileLayer final : public FileLayer {
public:
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
};

} // namespace morvo
