#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>

#include <chrono>
#include <cstdint>
#include <functional>
#include <stop_token>
#include <vector>

namespace morvo {

/// Reads what was appended to the inbox since the last look, and turns its lines into signals.
///
/// The inbox is `inbox.jsonl`: UTF-8, one JSON object a line; writers only ever append. A line that
/// is no JSON object, or is longer than `LineSplitter::longestLine`, is dropped. Memory stays
/// bounded whatever the file grew by.
///
/// Confined to one thread at a time.
class InboxReader {
public:
  /// Takes the signals of one line; never called without any. May wait, but must return soon after
  /// a stop is requested.
  using Receiver = std::function<void(QList<QJsonObject>, const std::stop_token &)>;
  /// Lets that much time pass, or less once a stop is requested.
  using Pause = std::function<void(std::chrono::milliseconds, const std::stop_token &)>;

  /// `debug` asks for lines on standard error that tell each step.
  InboxReader(QString path, Receiver onSignals, bool debug, Pause pause);

  /// Begins behind the file's present content, which will never be read.
  void skipPresent();

  /// One poll: hands over the signals of what is new, one call of the receiver a line, in file
  /// order. A file that cannot be opened is tried again at the next poll; one that shrank is read
  /// from its start. Returns early when a stop is requested; unread lines are then lost.
  ///
  /// A line whose end is still missing is waited for, some tenths of a second at most: a reader
  /// can see a single write in parts. What is incomplete after that counts as read: nothing is put
  /// together across polls.
  void drain(const std::stop_token &stop = {});

  /// Byte offset of the next unread byte.
  [[nodiscard]] std::uint64_t offset() const { return m_offset; }

private:
  /// False when there is no regular file to open.
  bool readFile(const QByteArray &path, std::uint64_t size, const std::stop_token &stop);
  void readOn(int descriptor, const std::stop_token &stop);
  bool awaitGrowth(int attempt, const std::stop_token &stop) const;
  void handleLine(const QByteArray &line, const std::stop_token &stop);
  template <typename... Numbers> void log(QStringView text, Numbers... numbers) const;

  QString m_path;
  Receiver m_onSignals;
  bool m_debug;
  Pause m_pause;
  std::uint64_t m_offset = 0;
  std::uint64_t m_tick = 0;
  /// For the log: how many signals each object of this poll gave.
  std::vector<qsizetype> m_signalCounts;
};

} // namespace morvo
