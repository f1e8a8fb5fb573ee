#pragma once

#include "pet/PetPack.h"

#include <array>
#include <cstdint>
#include <list>

namespace morvo {

/// Remembers the packs decoded last, so that a burst of events decodes a pack once. The file's
/// identity, size and times are looked at on each call, so a rewritten pack acts at once. Not
/// thread-safe.
class PetPackCache {
public:
  /// The pack in this file; nothing when it cannot be read or decoded, is no regular file, or is
  /// larger than `largestFile`.
  [[nodiscard]] std::optional<PetPack> load(const QString &path);

  /// Files decoded so far.
  [[nodiscard]] std::uint64_t filesDecoded() const { return m_filesDecoded; }

  static constexpr std::int64_t largestFile = std::int64_t{1024} * 1024;

private:
  /// What a file cannot keep when it is rewritten: device, inode, size, and the times of its
  /// content and its entry in seconds with their nanoseconds.
  using Stamp = std::array<std::int64_t, 7>;

  struct Entry {
    QString path;
    Stamp stamp{};
    std::optional<PetPack> pack;
  };

  /// The one used last in front.
  std::list<Entry> m_entries;
  std::uint64_t m_filesDecoded = 0;
};

} // namespace morvo
