#include "monitor/InboxReader.h"

#include "base/Diagnostics.h"
#include "monitor/LineSplitter.h"

#include <QDir>
#include <QFile>
#include <QHash>
#include <QTemporaryDir>

#include <algorithm>
#include <atomic>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace morvo {
namespace {

using Batch = QList<QJsonObject>;

/// A file that is appended to as the hook scripts do it: one write a call.
class Appender {
public:
  explicit Appender(const QString &path)
      : m_descriptor(::open(QFile::encodeName(path).constData(),
                            O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600)) {}
  Appender(const Appender &) = delete;
  Appender &operator=(const Appender &) = delete;
  ~Appender() { ::close(m_descriptor); }

  [[nodiscard]] bool append(const QByteArray &bytes) const {
    return ::write(m_descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())) ==
           bytes.size();
  }

private:
  int m_descriptor;
};

QByteArray doneLine(const QByteArray &source) {
  return R"({"hook_event_name":"Stop","_src":")" + source + "\"}\n";
}

class InboxReaderTest : public testing::Test {
protected:
  void append(const QByteArray &bytes) const { ASSERT_TRUE(Appender(m_path).append(bytes)); }
  void replaceBy(const QByteArray &bytes) const {
    QFile file(m_path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(bytes);
  }
  /// The providers of the signals handed over since the last call.
  [[nodiscard]] QStringList takeSeen() {
    QStringList sources;
    for (const Batch &batch : std::exchange(m_batches, {})) {
      EXPECT_EQ(batch.size(), 1);
      sources << batch.first().value(QStringLiteral("provider")).toString();
    }
    return sources;
  }
  [[nodiscard]] QStringList drain() {
    m_reader.drain();
    return takeSeen();
  }
  [[nodiscard]] QByteArray encodedPath() const { return QFile::encodeName(m_path); }

  QTemporaryDir m_folder;
  QString m_path = m_folder.filePath(QStringLiteral("inbox.jsonl"));
  QList<Batch> m_batches;
  std::function<void()> m_onBatch = [] {};
  /// What happens while the reader waits for the end of a line.
  std::function<void()> m_onPause = [] {};
  int m_pauses = 0;
  std::chrono::milliseconds m_paused{};
  InboxReader m_reader = makeReader(false);

  InboxReader makeReader(bool debug) {
    return {m_path,
            [this](Batch batch, const std::stop_token &) {
              m_batches << std::move(batch);
              m_onBatch();
            },
            debug,
            [this](std::chrono::milliseconds pause, const std::stop_token &) {
              ++m_pauses;
              m_paused += pause;
              m_onPause();
            }};
  }
};

using Seen = QStringList;
const QString a = QStringLiteral("a");
const QString b = QStringLiteral("b");
const QString c = QStringLiteral("c");

TEST_F(InboxReaderTest, ALineThatWasThereBeforeIsNeverSeen) {
  append(doneLine("old"));
  m_reader.skipPresent();
  EXPECT_EQ(drain(), Seen{});
  append(doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
}

TEST_F(InboxReaderTest, AMissingFileBeginsAtNothing) {
  m_reader.skipPresent();
  EXPECT_EQ(m_reader.offset(), 0U);
  EXPECT_EQ(drain(), Seen{});
  append(doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
}

TEST_F(InboxReaderTest, ThreeLinesInOneTickAreThreeCallsInFileOrder) {
  append(doneLine("a") + doneLine("b") + doneLine("c"));
  m_reader.drain();
  EXPECT_EQ(m_batches.size(), 3);
  EXPECT_EQ(takeSeen(), (Seen{a, b, c}));
  EXPECT_EQ(drain(), Seen{}) << "what was read is not read again";
}

TEST_F(InboxReaderTest, BlankLinesGiveNoSignal) {
  append("\n\n   \n\t\n\r\n" + doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
}

TEST_F(InboxReaderTest, ALineEndOfTheOtherKindDoesNoHarm) {
  append("{\"hook_event_name\":\"Stop\",\"_src\":\"a\"}\r\n" + doneLine("b"));
  EXPECT_EQ(drain(), (Seen{a, b}));
}

TEST_F(InboxReaderTest, ALastLineWithoutItsLineFeedIsReadAsItStands) {
  append(doneLine("a") + doneLine("b").chopped(1));
  EXPECT_EQ(drain(), (Seen{a, b}));
  append("\n" + doneLine("c"));
  EXPECT_EQ(drain(), Seen{c});
}

TEST_F(InboxReaderTest, TruncationMakesTheNextTickReadTheWholeNewContent) {
  append(doneLine("a") + doneLine("b") + doneLine("c"));
  EXPECT_EQ(drain(), (Seen{a, b, c}));
  replaceBy(doneLine("b") + doneLine("a"));
  EXPECT_EQ(drain(), (Seen{b, a}));
}

TEST_F(InboxReaderTest, TruncationToNothingStartsAgainFromTheBeginning) {
  append(doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
  replaceBy({});
  EXPECT_EQ(drain(), Seen{});
  EXPECT_EQ(m_reader.offset(), 0U);
  append(doneLine("b"));
  EXPECT_EQ(drain(), Seen{b});
}

TEST_F(InboxReaderTest, ARemovedFileIsReadFromItsStartOnceItIsBackAndSmaller) {
  append(doneLine("a") + doneLine("b"));
  EXPECT_EQ(drain(), (Seen{a, b}));
  const auto offset = m_reader.offset();
  ASSERT_TRUE(QFile::remove(m_path));
  EXPECT_EQ(drain(), Seen{});
  EXPECT_EQ(m_reader.offset(), offset) << "a tick that cannot open the file keeps the offset";
  append(doneLine("c"));
  EXPECT_EQ(drain(), Seen{c});
}

TEST_F(InboxReaderTest, ASmallerFileRenamedIntoPlaceIsReadWhole) {
  append(doneLine("a") + doneLine("b"));
  EXPECT_EQ(drain(), (Seen{a, b}));
  const QString other = m_folder.filePath(QStringLiteral("other"));
  ASSERT_TRUE(Appender(other).append(doneLine("c")));
  ASSERT_EQ(::rename(QFile::encodeName(other).constData(), encodedPath().constData()), 0);
  EXPECT_EQ(drain(), Seen{c});
}

TEST_F(InboxReaderTest, ADirectoryInItsPlaceDoesNoHarm) {
  append(doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
  ASSERT_TRUE(QFile::remove(m_path));
  ASSERT_TRUE(QDir().mkdir(m_path));
  EXPECT_EQ(drain(), Seen{});
  ASSERT_TRUE(QDir().rmdir(m_path));
  append("\n" + doneLine("b").chopped(1));
  EXPECT_EQ(drain(), Seen{}) << "as large as before, so nothing seems new";
  append("\n" + doneLine("c"));
  EXPECT_EQ(drain(), Seen{c});
}

TEST_F(InboxReaderTest, ADirectoryAtTheStartCountsAsEmpty) {
  ASSERT_TRUE(QDir().mkdir(m_path));
  m_reader.skipPresent();
  EXPECT_EQ(m_reader.offset(), 0U);
  EXPECT_EQ(drain(), Seen{});
  ASSERT_TRUE(QDir().rmdir(m_path));
  append(doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
}

TEST_F(InboxReaderTest, APipeInItsPlaceNeitherHangsNorIsRead) {
  append(doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
  ASSERT_TRUE(QFile::remove(m_path));
  ASSERT_EQ(::mkfifo(encodedPath().constData(), 0600), 0);
  EXPECT_EQ(drain(), Seen{});
  const int pipe = ::open(encodedPath().constData(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(pipe, 0);
  EXPECT_EQ(::write(pipe, "x\n", 2), 2);
  EXPECT_EQ(drain(), Seen{});
  ::close(pipe);
  ASSERT_TRUE(QFile::remove(m_path));
  append(doneLine("b").chopped(1));
  EXPECT_EQ(drain(), Seen{b});
}

TEST_F(InboxReaderTest, ALinkIsFollowed) {
  const QString target = m_folder.filePath(QStringLiteral("elsewhere"));
  ASSERT_TRUE(Appender(target).append(doneLine("old")));
  ASSERT_TRUE(QFile::link(target, m_path));
  m_reader.skipPresent();
  ASSERT_TRUE(Appender(target).append(doneLine("a")));
  EXPECT_EQ(drain(), Seen{a});
}

TEST_F(InboxReaderTest, ALinkToNothingOrToItselfDoesNoHarm) {
  ASSERT_TRUE(QFile::link(m_folder.filePath(QStringLiteral("nowhere")), m_path));
  EXPECT_EQ(drain(), Seen{});
  ASSERT_TRUE(QFile::remove(m_path));
  ASSERT_TRUE(QFile::link(m_path, m_path));
  EXPECT_EQ(drain(), Seen{});
  ASSERT_TRUE(QFile::remove(m_path));
  append(doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
}

TEST_F(InboxReaderTest, AFailedReadCountsAsNoData) {
  append(doneLine("a"));
  EXPECT_EQ(drain(), Seen{a});
  ASSERT_TRUE(QFile::remove(m_path));
  // A regular file whose first page cannot be read.
  ASSERT_TRUE(QFile::link(QStringLiteral("/proc/self/mem"), m_path));
  EXPECT_EQ(drain(), Seen{});
  EXPECT_EQ(m_reader.offset(), 0U);
  ASSERT_TRUE(QFile::remove(m_path));
  append(doneLine("b"));
  EXPECT_EQ(drain(), Seen{b});
}

struct Hostile {
  const char *name;
  QByteArray line;
};

std::ostream &operator<<(std::ostream &out, const Hostile &hostile) { return out << hostile.name; }

class InboxReaderHostile : public InboxReaderTest, public testing::WithParamInterface<Hostile> {};

TEST_P(InboxReaderHostile, LineIsDroppedAndTheNextOneIsSeen) {
  append(doneLine("a") + GetParam().line + "\n" + doneLine("b"));
  EXPECT_EQ(drain(), (Seen{a, b}));
}

INSTANTIATE_TEST_SUITE_P(
    All, InboxReaderHostile,
    testing::Values(
        Hostile{"text", "no JSON at all"}, Hostile{"number", "42"}, Hostile{"null", "null"},
        Hostile{"array", R"([{"hook_event_name":"Stop"}])"}, Hostile{"string", "\"Stop\""},
        Hostile{"cut", R"({"hook_event_name":"Stop)"}, Hostile{"trailing", R"({"event":"Stop"} x)"},
        Hostile{"two objects", R"({"event":"Stop"}{"event":"Stop"})"},
        Hostile{"empty object", "{}"}, Hostile{"unknown kind", R"({"kind":"other"})"},
        Hostile{"NUL bytes", QByteArray(100, '\0')},
        Hostile{"a NUL before the object", QByteArray("\0{\"event\":\"Stop\"}", 17)},
        Hostile{"invalid UTF-8", "{\"event\":\"Stop\",\"_src\":\"\xff\xfe\"}"},
        Hostile{"a surrogate in raw bytes", "{\"event\":\"Stop\",\"_src\":\"\xed\xa0\xbd\"}"},
        Hostile{"an overlong slash", "{\"event\":\"Stop\",\"_src\":\"\xc0\xaf\"}"},
        Hostile{"a cut character", "{\"event\":\"Stop\",\"_src\":\"\xe4\xbd"},
        Hostile{"deep arrays", QByteArray(1000000, '[')},
        Hostile{"deep objects", QByteArray("{\"a\":").repeated(200000)},
        Hostile{"a 5 MB text", QByteArray(5000000, 'x')},
        Hostile{"a 5 MB object",
                R"({"event":"PreToolUse","x":")" + QByteArray(5000000, 'x') + "\"}"},
        Hostile{"more than the longest line",
                R"({"event":"Stop","x":")" + QByteArray(LineSplitter::longestLine, 'x') + "\"}"}));

TEST_F(InboxReaderTest, ALoneSurrogateEscapeIsNoReasonToDropALine) {
  append("{\"hook_event_name\":\"Notification\",\"_src\":\"a\",\"message\":\"x\\ud83d\"}\n");
  EXPECT_EQ(drain(), Seen{a});
}

TEST_F(InboxReaderTest, ALineOfFiveMegabytesIsSeen) {
  append(R"({"hook_event_name":"Stop","_src":"a","x":")" + QByteArray(5000000, 'x') + "\"}\n");
  EXPECT_EQ(drain(), Seen{a});
}

TEST_F(InboxReaderTest, ALineInTheMiddleOfItsWriteIsWaitedFor) {
  const QByteArray line = doneLine("b");
  append(doneLine("a") + line.first(10));
  m_onPause = [&] {
    if (m_pauses == 3) {
      append(line.sliced(10) + doneLine("c"));
    }
  };
  EXPECT_EQ(drain(), (Seen{a, b, c}));
  EXPECT_EQ(m_pauses, 3);
}

TEST_F(InboxReaderTest, LinesBeforeAnUnfinishedOneDoNotWaitForIt) {
  append(doneLine("a") + doneLine("b").chopped(5));
  Seen seenAtPause;
  m_onPause = [&] { seenAtPause << takeSeen(); };
  EXPECT_EQ(drain(), Seen{});
  EXPECT_EQ(seenAtPause, Seen{a});
}

TEST_F(InboxReaderTest, AFinishedLineIsNotWaitedFor) {
  append(doneLine("a") + "\n");
  EXPECT_EQ(drain(), Seen{a});
  EXPECT_EQ(m_pauses, 0);
}

TEST_F(InboxReaderTest, AnUnfinishedLineIsLostAfterABoundedWait) {
  const QByteArray line = doneLine("b");
  append(doneLine("a") + line.first(10));
  EXPECT_EQ(drain(), Seen{a});
  EXPECT_GT(m_pauses, 0);
  EXPECT_EQ(m_paused, std::chrono::milliseconds(400));
  append(line.sliced(10) + doneLine("c"));
  EXPECT_EQ(drain(), Seen{c}) << "nothing is put together across ticks";
}

TEST_F(InboxReaderTest, AWriterThatDripsBytesDoesNotHoldTheTick) {
  append("{");
  m_onPause = [&] {
    ASSERT_LT(m_pauses, 100);
    append("x");
  };
  EXPECT_EQ(drain(), Seen{});
}

TEST_F(InboxReaderTest, ALineWrittenDuringTheTickIsReadInIt) {
  append(doneLine("a"));
  m_onBatch = [&] {
    if (m_batches.size() == 1) {
      append(doneLine("b"));
    }
  };
  EXPECT_EQ(drain(), (Seen{a, b}));
}

TEST_F(InboxReaderTest, LinesLongerThanAChunkComeThroughWhole) {
  QByteArray content;
  Seen expected;
  for (int i = 0; i < 20; ++i) {
    const QByteArray source = QByteArray::number(i) + QByteArray(i * 50000, 'y');
    content += doneLine(source);
    expected << QString::fromLatin1(source);
  }
  append(content);
  EXPECT_EQ(drain(), expected);
}

TEST_F(InboxReaderTest, AStopEndsTheTickAtOnce) {
  std::stop_source stop;
  append(doneLine("a") + doneLine("b"));
  m_onBatch = [&] { stop.request_stop(); };
  m_reader.drain(stop.get_token());
  EXPECT_EQ(takeSeen(), Seen{a});
}

class InboxReaderDebug : public InboxReaderTest {
protected:
  QStringList m_log;
  Diagnostics::Capture m_capture{[this](const QString &line) { m_log << line; }};
};

TEST_F(InboxReaderDebug, TellsEachStepWhenAsked) {
  InboxReader reader = makeReader(true);
  append("x\n");
  reader.skipPresent();
  reader.drain();
  reader.drain();
  reader.drain();
  append("no JSON\n{}\n{\"event\":\"Stop\"}\n");
  reader.drain();
  ASSERT_TRUE(QFile::remove(m_path));
  reader.drain();
  EXPECT_EQ(m_log, (QStringList{
                       QStringLiteral("[INBOX] watcher started (poll), offset=2"),
                       QStringLiteral("[INBOX] tick=1 size=2 offset=2"),
                       QStringLiteral("[INBOX] tick=2 size=2 offset=2"),
                       QStringLiteral("[INBOX] tick=4 size=30 offset=2"),
                       QStringLiteral("[INBOX] drain newBytes=28"),
                       QStringLiteral("[INBOX] line parsed, signals=0"),
                       QStringLiteral("[INBOX] line parsed, signals=1"),
                       QStringLiteral("[INBOX] tick=5 size=0 offset=30"),
                       QStringLiteral("[INBOX] open failed"),
                   }));
}

TEST_F(InboxReaderDebug, TellsAReadThatBroughtNothing) {
  InboxReader reader = makeReader(true);
  append("x\n");
  reader.skipPresent();
  replaceBy({});
  reader.drain();
  EXPECT_EQ(m_log.last(), QStringLiteral("[INBOX] drain newBytes=0"));
}

TEST_F(InboxReaderDebug, TellsTheBytesOfAPollOnceHoweverManyReadsTheyTake) {
  InboxReader reader = makeReader(true);
  append(QByteArray(1'000'000, 'x') + "\n{}\n");
  reader.drain();
  EXPECT_EQ(m_log.mid(1), (QStringList{QStringLiteral("[INBOX] drain newBytes=1000004"),
                                       QStringLiteral("[INBOX] line parsed, signals=0")}));
}

TEST_F(InboxReaderDebug, AFailedReadTellsNoBytes) {
  InboxReader reader = makeReader(true);
  append(doneLine("a"));
  reader.skipPresent();
  ASSERT_TRUE(QFile::remove(m_path));
  ASSERT_TRUE(QFile::link(QStringLiteral("/proc/self/mem"), m_path));
  reader.drain();
  EXPECT_EQ(m_log.last(), QStringLiteral("[INBOX] drain newBytes=0"));
}

TEST_F(InboxReaderDebug, IsSilentOtherwise) {
  append(doneLine("a"));
  m_reader.skipPresent();
  append(doneLine("b"));
  EXPECT_EQ(drain(), Seen{b});
  ASSERT_TRUE(QFile::remove(m_path));
  EXPECT_EQ(drain(), Seen{});
  EXPECT_EQ(m_log, QStringList{});
}

/// The lines of one of many writers, of lengths that cross pages in every way.
class Writer {
public:
  Writer(QString path, int number, int lines)
      : m_path(std::move(path)), m_number(number), m_lines(lines) {}

  [[nodiscard]] bool operator()() const {
    const Appender file(m_path);
    for (int i = 0; i < m_lines; ++i) {
      const QByteArray name = QByteArray::number(m_number) + '-' + QByteArray::number(i);
      const QByteArray padding((m_number * 131 + i * 977) % 9000, 'x');
      if (!file.append(R"({"event":"Stop","x":")" + padding + R"(","_src":")" + name + "\"}\n")) {
        return false;
      }
    }
    return true;
  }

private:
  QString m_path;
  int m_number;
  int m_lines;
};

TEST_F(InboxReaderTest, EveryLineOfFiftyConcurrentWritersIsSeenOnceAndInFileOrder) {
  constexpr int writers = 50;
  constexpr int linesEach = 200;
  append({});
  std::atomic<int> writing = writers;
  std::atomic<int> failed = 0;
  std::vector<std::jthread> threads;
  // Waits for the writer instead of for a time, so that a busy machine makes no difference.
  m_onPause = [&] {
    while (writing > 0 && static_cast<std::uint64_t>(QFile(m_path).size()) == m_reader.offset()) {
      std::this_thread::yield();
    }
  };
  for (int number = 0; number < writers; ++number) {
    threads.emplace_back([&, number] {
      failed += Writer(m_path, number, linesEach)() ? 0 : 1;
      --writing;
    });
  }
  while (writing > 0) {
    m_reader.drain();
  }
  m_reader.drain();
  EXPECT_EQ(failed, 0);

  Seen inFile;
  QFile file(m_path);
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  while (!file.atEnd()) {
    const QByteArray line = file.readLine();
    const qsizetype start = line.lastIndexOf(":\"") + 2;
    inFile << QString::fromLatin1(line.sliced(start, line.lastIndexOf('"') - start));
  }
  EXPECT_EQ(inFile.size(), writers * linesEach);
  EXPECT_TRUE(takeSeen() == inFile);
}

/// The greatest resident size of this process since `resetPeak`, in bytes.
qint64 peakMemory() {
  QFile status(QStringLiteral("/proc/self/status"));
  EXPECT_TRUE(status.open(QIODevice::ReadOnly));
  for (const QByteArray &line : status.readAll().split('\n')) {
    if (line.startsWith("VmHWM:")) {
      return line.simplified().split(' ').value(1).toLongLong() * 1024;
    }
  }
  ADD_FAILURE() << "no VmHWM";
  return 0;
}

void resetPeak() {
  QFile clear(QStringLiteral("/proc/self/clear_refs"));
  ASSERT_TRUE(clear.open(QIODevice::WriteOnly));
  ASSERT_EQ(clear.write("5"), 1);
}

/// The sanitizer keeps freed memory, so only what is read can be looked at there.
#ifdef __SANITIZE_ADDRESS__
constexpr bool memoryIsMeasurable = false;
#else
constexpr bool memoryIsMeasurable = true;
#endif

constexpr qint64 growth = qint64{256} * 1024 * 1024;

TEST_F(InboxReaderTest, ManyMegabytesOfLinesInOneTickCostLittleMemory) {
  const QByteArray filler = R"({"event":"PreToolUse","x":")" + QByteArray(60000, 'x') + "\"}\n";
  {
    const Appender file(m_path);
    for (qint64 written = 0; written < growth; written += filler.size()) {
      ASSERT_TRUE(file.append(filler));
    }
    ASSERT_TRUE(file.append(doneLine("a")));
  }
  resetPeak();
  const qint64 before = peakMemory();
  EXPECT_EQ(drain(), Seen{a});
  if (memoryIsMeasurable) {
    EXPECT_LT(peakMemory() - before, qint64{8} * 1024 * 1024);
  }
}

TEST_F(InboxReaderTest, ManyMegabytesWithoutALineFeedCostBoundedMemory) {
  append({});
  ASSERT_EQ(::truncate(encodedPath().constData(), growth), 0);
  append("\n" + doneLine("a"));
  resetPeak();
  const qint64 before = peakMemory();
  EXPECT_EQ(drain(), Seen{a});
  if (memoryIsMeasurable) {
    // The longest line, its copy while the buffer grows, and slack.
    EXPECT_LT(peakMemory() - before, qint64{3} * LineSplitter::longestLine);
  }
}

} // namespace
} // namespace morvo
