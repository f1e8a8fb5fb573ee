#include "support/FailingFileLayer.h"

namespace morvo::test {

void FailingFileLayer::failAt(int call, Fault fault, int errorNumber) {
  m_calls = 0;
  m_failing = call;
  m_fault = fault;
  m_error = errorNumber;
}

std::optional<FileError> FailingFileLayer::next(const char *operation, const QString &path) {
  ++m_calls;
  m_interference(QString::fromLatin1(operation));
  const bool fails = m_fault != Fault::none &&
                     (m_calls == m_failing || (m_fault == Fault::crash && m_calls > m_failing));
  return fails ? std::optional(FileError{m_error, QString::fromLatin1(operation), path})
               : std::nullopt;
}

FileLayer::Result<QByteArray> FailingFileLayer::read(const QString &path) {
  const auto fault = next("open", path);
  return fault ? std::unexpected(*fault) : m_files.read(path);
}

FileLayer::Result<void> FailingFileLayer::readPieces(const QString &path, const Take &take) {
  const auto fault = next("open", path);
  return fault ? std::unexpected(*fault) : m_files.readPieces(path, take);
}

FileLayer::Result<FileLayer::Status> FailingFileLayer::status(const QString &path) {
  const auto fault = next("stat", path);
  return fault ? std::unexpected(*fault) : m_files.status(path);
}

FileLayer::Result<QString> FailingFileLayer::linkTarget(const QString &path) {
  const auto fault = next("readlink", path);
  return fault ? std::unexpected(*fault) : m_files.linkTarget(path);
}

FileLayer::Result<int> FailingFileLayer::create(const QString &path, std::uint32_t mode) {
  const auto fault = next("create", path);
  return fault ? std::unexpected(*fault) : m_files.create(path, mode);
}

FileLayer::Result<void> FailingFileLayer::write(int descriptor, const QByteArray &bytes) {
  const auto fault = next("write", {});
  if (fault && m_fault == Fault::tornWrite) {
    static_cast<void>(m_files.write(descriptor, bytes.first(bytes.size() / 2)));
  }
  return fault ? std::unexpected(*fault) : m_files.write(descriptor, bytes);
}

FileLayer::Result<void> FailingFileLayer::setMode(int descriptor, std::uint32_t mode) {
  const auto fault = next("chmod", {});
  return fault ? std::unexpected(*fault) : m_files.setMode(descriptor, mode);
}

FileLayer::Result<void> FailingFileLayer::setOwner(int descriptor, std::uint32_t owner,
                                                   std::uint32_t group) {
  const auto fault = next("chown", {});
  return fault ? std::unexpected(*fault) : m_files.setOwner(descriptor, owner, group);
}

FileLayer::Result<void> FailingFileLayer::sync([[maybe_unused]] int descriptor) {
  const auto fault = next("fsync", {});
  // Only a power cut tells a synced file from another one, and waiting for the disk is most of a
  // sweep's time.
  return fault ? std::unexpected(*fault) : Result<void>();
}

FileLayer::Result<void> FailingFileLayer::close(int descriptor) {
  const auto fault = next("close", {});
  // Even a failing close gives the descriptor back.
  auto closed = m_files.close(descriptor);
  return fault ? std::unexpected(*fault) : closed;
}

FileLayer::Result<void> FailingFileLayer::rename(const QString &from, const QString &to) {
  const auto fault = next("rename", to);
  return fault ? std::unexpected(*fault) : m_files.rename(from, to);
}

FileLayer::Result<void> FailingFileLayer::remove(const QString &path) {
  const auto fault = next("remove", path);
  return fault ? std::unexpected(*fault) : m_files.remove(path);
}

FileLayer::Result<void> FailingFileLayer::makeDirectories(const QString &path, std::uint32_t mode) {
  const auto fault = next("mkdir", path);
  return fault ? std::unexpected(*fault) : m_files.makeDirectories(path, mode);
}

} // namespace morvo::test
