#include "usage/FileIdentity.h"

#include <gtest/gtest.h>
#include <limits>

namespace morvo {
namespace {

FileIdentity writtenAt(time_t seconds, long nanoseconds) {
  struct stat info{};
  info.st_mtim = {.tv_sec = seconds, .tv_nsec = nanoseconds};
  info.st_ctim = info.st_mtim;
  return FileIdentity::of(info);
}

TEST(FileIdentityTest, TheTimeIsCutToMillisecondsTowardsThePast) {
  EXPECT_EQ(writtenAt(1, 1'999'999).modifiedAt(), WallTime(std::chrono::milliseconds(1001)));
  EXPECT_EQ(writtenAt(-1, 999'999'999).modifiedAt(), WallTime(std::chrono::milliseconds(-1)));
}

TEST(FileIdentityTest, TimesThatNanosecondsCannotCountEndAtTheFarthestThatTheyCan) {
  using Limits = std::numeric_limits<time_t>;
  constexpr long longest = 999'999'999;
  EXPECT_GT(writtenAt(Limits::max(), longest).modifiedAt(),
            writtenAt(9'000'000'000, 0).modifiedAt());
  EXPECT_LT(writtenAt(Limits::min(), longest).modifiedAt(),
            writtenAt(-9'000'000'000, 0).modifiedAt());
}

TEST(FileIdentityTest, AnotherTimeSizeOrNumberIsAnotherFile) {
  FileIdentity changed = writtenAt(1, 0);
  EXPECT_EQ(changed, writtenAt(1, 0));
  changed.size = 1;
  EXPECT_NE(changed, writtenAt(1, 0));
  EXPECT_TRUE(changed.isSameFile(writtenAt(2, 0)));
  changed.inode = 1;
  EXPECT_FALSE(changed.isSameFile(writtenAt(1, 0)));
  EXPECT_NE(writtenAt(1, 0), writtenAt(1, 1));
}

} // namespace
} // namespace morvo
