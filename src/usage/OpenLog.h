#pragma once

#include "usage/FileIdentity.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace morvo {

/// A log opened for reading, and what it was when it was opened. What is appended later is left
/// for the next time.
class OpenLog {
public:
  /// Nothing when there is no such file, no permission, or no regular file; never waits.
  [[nodiscard]] static std::optional<OpenLog> at(const std::string &path);
  OpenLog(const OpenLog &) = delete;
  OpenLog &operator=(const OpenLog &) = delete;
  OpenLog(OpenLog &&other) noexcept;
  OpenLog &operator=(OpenLog &&other) = delete;
  ~OpenLog();

  [[nodiscard]] int descriptor() const { return m_descriptor; }
  [[nodiscard]] const FileIdentity &identity() const { return m_identity; }

  /// Reads up to that many bytes; fewer where the file ends, nothing when reading fails.
  [[nodiscard]] std::optional<std::size_t> read(std::int64_t from, char *into,
                                                std::size_t count) const;

  /// A number for the bytes at the file's beginning and those right before `offset`, to tell later
  /// whether what was read is still what stands there. Nothing when they cannot be read.
  [[nodiscard]] std::optional<std::uint64_t> fingerprint(std::int64_t offset) const;

private:
  OpenLog(int descriptor, const FileIdentity &identity);

  int m_descriptor;
  FileIdentity m_identity;
};

} // namespace morvo
