#include "pet/PetPackCache.h"

#include "pet/RegularFile.h"

#include <algorithm>
#include <ctime>

namespace morvo {
namespace {

/// The pets in play, with room for one that is being tried out.
constexpr std::size_t mostEntries = 4;

/// Whether a write after now would show in the file's times: they move in steps of the system's
/// coarse clock, so a file written in the present step may change again unseen. Only the time of
/// the entry tells: each write moves it, and no one can set it into the future.
bool hasSettled(const struct stat &status) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  const timespec &written = status.st_ctim;
  return written.tv_sec < now.tv_sec ||
         (written.tv_sec == now.tv_sec && written.tv_nsec < now.tv_nsec);
}

} // namespace

std::optional<PetPack> PetPackCache::load(const QString &path) {
  QFile file;
  const auto status = RegularFile::open(path, file);
  if (!status || status->st_size > largestFile) {
    return std::nullopt;
  }
  const Stamp stamp{static_cast<std::int64_t>(status->st_dev),
                    static_cast<std::int64_t>(status->st_ino),
                    status->st_size,
                    status->st_mtim.tv_sec,
                    status->st_mtim.tv_nsec,
                    status->st_ctim.tv_sec,
                    status->st_ctim.tv_nsec};
  const auto known = std::ranges::find(m_entries, path, &Entry::path);
  if (known != m_entries.end() && known->stamp == stamp) {
    m_entries.splice(m_entries.begin(), m_entries, known);
    return m_entries.front().pack;
  }
  if (known != m_entries.end()) {
    m_entries.erase(known);
  }
  const bool settled = hasSettled(*status);
  auto pack = petPackFromJson(file.read(largestFile));
  ++m_filesDecoded;
  if (settled) {
    m_entries.push_front({path, stamp, pack});
    m_entries.resize(std::min(m_entries.size(), mostEntries));
  }
  return pack;
}

} // namespace morvo
