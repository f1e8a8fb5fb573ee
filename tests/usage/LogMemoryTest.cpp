#include "usage/LogMemory.h"

#include <condition_variable>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mutex>

namespace morvo {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// What the logs of a test write down together.
struct Record {
  std::mutex mutex;
  std::vector<std::string> paths;
  std::vector<std::thread::id> threads;
  std::condition_variable hasBegun;
  /// So many readings wait for each other.
  std::size_t readingsThatMeet = 1;
};

Record *record = nullptr;

/// A log of which everything is always unknown.
class WrittenDownLog {
public:
  struct Tools {};

  [[nodiscard]] static bool knows(const FileIdentity & /*identity*/, WallTime /*since*/) {
    return false;
  }
  [[nodiscard]] static std::int64_t bytesMissing(const FileIdentity &identity, WallTime /*since*/) {
    return identity.size;
  }
  static void update(const std::string &path, WallTime /*since*/, Tools & /*tools*/,
                     const std::stop_token & /*stop*/) {
    std::unique_lock lock(record->mutex);
    record->paths.push_back(path);
    record->threads.push_back(std::this_thread::get_id());
    record->hasBegun.notify_all();
    // A broken reader ends all the same.
    EXPECT_TRUE(record->hasBegun.wait_for(
        lock, 30s, [] { return record->paths.size() >= record->readingsThatMeet; }));
  }
};

class LogMemoryTest : public testing::Test {
protected:
  LogMemoryTest() { record = &m_record; }
  ~LogMemoryTest() override { record = nullptr; }

  static LogFile file(const std::string &path, std::int64_t size) {
    LogFile log{.path = path};
    log.identity.size = size;
    return log;
  }
  void read(const std::vector<LogFile> &files) {
    LogMemory<WrittenDownLog>().update(files, {}, {});
  }

  Record m_record;
};

TEST_F(LogMemoryTest, TheLargestLogIsReadFirst) {
  read({file("small", 1), file("large", 3), file("middle", 2)});
  EXPECT_THAT(m_record.paths, ElementsAre("large", "middle", "small"));
}

TEST_F(LogMemoryTest, LittleIsReadByTheCallerAlone) {
  read({file("a", 1000), file("b", 1000)});
  EXPECT_THAT(m_record.threads,
              ElementsAre(std::this_thread::get_id(), std::this_thread::get_id()));
}

TEST_F(LogMemoryTest, OneLargeLogIsReadByTheCallerAlone) {
  read({file("a", std::int64_t{1} << 30U)});
  EXPECT_THAT(m_record.threads, ElementsAre(std::this_thread::get_id()));
}

TEST_F(LogMemoryTest, OfMuchASecondThreadReadsAtTheSameTime) {
  m_record.readingsThatMeet = 2;
  read({file("a", std::int64_t{1} << 20U), file("b", std::int64_t{1} << 20U)});
  ASSERT_EQ(m_record.threads.size(), 2U);
  EXPECT_NE(m_record.threads[0], m_record.threads[1]);
}

} // namespace
} // namespace morvo
