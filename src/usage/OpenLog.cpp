#include "usage/OpenLog.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <functional>
#include <string_view>
#include <unistd.h>
#include <utility>

namespace morvo {
namespace {

/// Bytes of each of the two places that a fingerprint covers.
constexpr std::int64_t fingerprintBytes = 4096;

} // namespace

std::optional<OpenLog> OpenLog::at(const std::string &path) {
  const int descriptor =
      ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW | O_CLOEXEC);
  if (descriptor < 0) {
    return std::nullopt;
  }
  struct stat info{};
  const bool isKnown = ::fstat(descriptor, &info) == 0;
  OpenLog log(descriptor, FileIdentity::of(info));
  return isKnown && S_ISREG(info.st_mode) ? std::optional(std::move(log)) : std::nullopt;
}

OpenLog::OpenLog(int descriptor, const FileIdentity &identity)
    : m_descriptor(descriptor), m_identity(identity) {}

OpenLog::OpenLog(OpenLog &&other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)), m_identity(other.m_identity) {}

OpenLog::~OpenLog() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
}

std::optional<std::size_t> OpenLog::read(std::int64_t from, char *into, std::size_t count) const {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got =
        ::pread(m_descriptor, into + done, count - done, from + static_cast<std::int64_t>(done));
    if (got < 0 && errno == EINTR) {
      continue;
    }
    if (got < 0) {
      return std::nullopt;
    }
    if (got == 0) {
      break;
    }
    done += static_cast<std::size_t>(got);
  }
  return done;
}

std::optional<std::uint64_t> OpenLog::fingerprint(std::int64_t offset) const {
  std::array<char, 2 * fingerprintBytes> bytes;
  const auto length = static_cast<std::size_t>(std::min(fingerprintBytes, offset));
  const auto head = read(0, bytes.data(), length);
  const auto tail = read(offset - static_cast<std::int64_t>(length), bytes.data() + length, length);
  if (head != length || tail != length) {
    return std::nullopt;
  }
  return std::hash<std::string_view>()({bytes.data(), 2 * length});
}

} // namespace morvo
