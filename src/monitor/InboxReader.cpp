#include "monitor/InboxReader.h"

#include "base/Diagnostics.h"
#include "base/Json.h"
#include "monitor/HookParser.h"
#include "monitor/LineSplitter.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace morvo {
namespace {

/// The first polls tell their figures even when nothing changed.
constexpr std::uint64_t firstQuietTick = 3;
using Chunk = std::array<char, std::size_t{256} * 1024>;
/// How long an unfinished last line is waited for, look by look. A writer needs microseconds, but
/// it may lose the processor in the middle of its write.
constexpr std::array<std::chrono::milliseconds, 9> settlingPauses{
    std::chrono::milliseconds(1),  std::chrono::milliseconds(2),   std::chrono::milliseconds(4),
    std::chrono::milliseconds(8),  std::chrono::milliseconds(16),  std::chrono::milliseconds(32),
    std::chrono::milliseconds(64), std::chrono::milliseconds(128), std::chrono::milliseconds(145)};

/// The size of a regular file, links followed; nothing for anything else.
std::optional<std::uint64_t> sizeOf(int outcome, const struct stat &status) {
  return outcome == 0 && S_ISREG(status.st_mode)
             ? std::optional(static_cast<std::uint64_t>(status.st_size))
             : std::nullopt;
}

std::optional<std::uint64_t> sizeOf(const QByteArray &path) {
  struct stat status{};
  return sizeOf(::stat(path.constData(), &status), status);
}

class OpenFile {
public:
  /// O_NONBLOCK is for a pipe that takes the file's place at the last moment.
  explicit OpenFile(const QByteArray &path)
      : m_descriptor(::open(path.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC)) {}
  OpenFile(const OpenFile &) = delete;
  OpenFile &operator=(const OpenFile &) = delete;
  ~OpenFile() {
    if (m_descriptor >= 0) {
      ::close(m_descriptor);
    }
  }

  [[nodiscard]] int descriptor() const { return m_descriptor; }
  /// Nothing as well when the file could not be opened.
  [[nodiscard]] std::optional<std::uint64_t> size() const {
    struct stat status{};
    return sizeOf(::fstat(m_descriptor, &status), status);
  }

private:
  int m_descriptor;
};

/// The number of bytes read, 0 at the end of the file, less than 0 on a failure.
ssize_t readAt(int descriptor, Chunk &chunk, std::uint64_t offset) {
  for (;;) {
    const ssize_t count =
        ::pread(descriptor, chunk.data(), chunk.size(), static_cast<off_t>(offset));
    if (count >= 0 || errno != EINTR) {
      return count;
    }
  }
}

QString fill(const QString &text) { return text; }

template <typename... Rest> QString fill(const QString &text, auto number, Rest... rest) {
  return fill(text.arg(number), rest...);
}

} // namespace

InboxReader::InboxReader(QString path, Receiver onSignals, bool debug, Pause pause)
    : m_path(std::move(path)), m_onSignals(std::move(onSignals)), m_debug(debug),
      m_pause(std::move(pause)) {}

void InboxReader::skipPresent() {
  m_offset = sizeOf(QFile::encodeName(m_path)).value_or(0);
  log(u"watcher started (poll), offset=%1", m_offset);
}

void InboxReader::drain(const std::stop_token &stop) {
  ++m_tick;
  const QByteArray path = QFile::encodeName(m_path);
  const auto present = sizeOf(path);
  const std::uint64_t size = present.value_or(0);
  if (m_tick < firstQuietTick || size != m_offset) {
    log(u"tick=%1 size=%2 offset=%3", m_tick, size, m_offset);
  }
  if (size == m_offset) {
    return;
  }
  if (!present || !readFile(path, size, stop)) {
    log(u"open failed");
  }
}

bool InboxReader::readFile(const QByteArray &path, std::uint64_t size,
                           const std::stop_token &stop) {
  const OpenFile file(path);
  const auto openedSize = file.size();
  if (!openedSize) {
    return false;
  }
  if (std::min(size, *openedSize) < m_offset) {
    m_offset = 0;
  }
  const std::uint64_t start = m_offset;
  readOn(file.descriptor(), stop);
  // How much was new is known only now, but the log tells it before the lines.
  log(u"drain newBytes=%1", m_offset - start);
  for (const qsizetype count : std::exchange(m_signalCounts, {})) {
    log(u"line parsed, signals=%1", count);
  }
  return true;
}

void InboxReader::readOn(int descriptor, const std::stop_token &stop) {
  const auto chunk = std::make_unique_for_overwrite<Chunk>();
  const auto handle = [this, &stop](const QByteArray &line) { handleLine(line, stop); };
  LineSplitter lines;
  for (int attempt = 0; !stop.stop_requested();) {
    const ssize_t count = readAt(descriptor, *chunk, m_offset);
    if (count < 0) {
      // The half line before the failure is no data either: it is read again at the next poll.
      m_offset -= static_cast<std::uint64_t>(lines.rest().size());
      return;
    }
    if (count > 0) {
      m_offset += static_cast<std::uint64_t>(count);
      const bool lineEnded = lines.feed(QByteArrayView(chunk->data(), count), handle);
      attempt = lineEnded ? 0 : attempt;
    } else if (lines.rest().isEmpty() || !awaitGrowth(attempt++, stop)) {
      break;
    }
  }
  if (!lines.rest().isEmpty()) {
    handle(lines.rest());
  }
}

bool InboxReader::awaitGrowth(int attempt, const std::stop_token &stop) const {
  const auto index = static_cast<std::size_t>(attempt);
  if (index >= settlingPauses.size()) {
    return false;
  }
  m_pause(settlingPauses[index], stop);
  return true;
}

void InboxReader::handleLine(const QByteArray &line, const std::stop_token &stop) {
  if (stop.stop_requested()) {
    return;
  }
  const auto object = Json::parseObject(line);
  if (!object) {
    return;
  }
  auto found = HookParser::signals(*object);
  if (m_debug) {
    m_signalCounts.push_back(found.size());
  }
  if (!found.isEmpty()) {
    m_onSignals(std::move(found), stop);
  }
}

template <typename... Numbers> void InboxReader::log(QStringView text, Numbers... numbers) const {
  if (m_debug) {
    Diagnostics::line(u"INBOX", fill(text.toString(), numbers...));
  }
}

} // namespace morvo
