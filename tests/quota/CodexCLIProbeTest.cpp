#include "usage/CodexCLIProbe.h"

#include "support/StandIns.h"

#include <array>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace morvo {
namespace {

using namespace Qt::Literals::StringLiterals;

/// Counts how often a folder is listed.
class FolderWatch {
public:
  explicit FolderWatch(const QString &folder) {
    // With the ends between them, one beginning is not merged with the next.
    EXPECT_GE(::inotify_add_watch(m_descriptor, QFile::encodeName(folder).constData(),
                                  IN_OPEN | IN_CLOSE_NOWRITE),
              0);
  }
  FolderWatch(const FolderWatch &) = delete;
  FolderWatch &operator=(const FolderWatch &) = delete;
  ~FolderWatch() { ::close(m_descriptor); }

  /// Since the last call.
  [[nodiscard]] int listings() const {
    int count = 0;
    alignas(inotify_event) std::array<char, 4096> bytes{};
    for (ssize_t size = 0; (size = ::read(m_descriptor, bytes.data(), bytes.size())) > 0;) {
      for (ssize_t i = 0; i < size;) {
        const auto *const event = reinterpret_cast<const inotify_event *>(&bytes[i]);
        count += (event->mask & IN_OPEN) != 0 && (event->mask & IN_ISDIR) != 0 ? 1 : 0;
        i += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
      }
    }
    return count;
  }

private:
  int m_descriptor = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
};

class CodexCLIProbeTest : public test::StandIns {
protected:
  CodexCLIProbeTest() {
    EXPECT_TRUE(QDir().mkpath(sessions()));
    m_watch = std::make_unique<FolderWatch>(sessions());
  }

  [[nodiscard]] QString sessions() const { return path(u"home/.codex/sessions"_s); }
  std::optional<LiveRateLimit> probe() {
    const HomeFolder home{path(u"home"_s)};
    CodexCLIProbe probe({.home = home,
                         .environment = m_environment,
                         .scheduler = &m_scheduler,
                         .pool = &m_pool,
                         .codex = std::make_shared<CodexUsageReader>(home)});
    return test::Awaited(probe.probe({})).wait().value_or(std::nullopt);
  }
  void hasCodex() {
    m_environment = m_environment.with(u"MORVO_CODEX_PATH"_s, standIn(u"codex"_s, u"exit 1"_s));
  }

  WorkerPool m_pool;
  std::unique_ptr<FolderWatch> m_watch;
};

TEST_F(CodexCLIProbeTest, WhereTheCommandIsTheLogsAreReadASecondTime) {
  hasCodex();
  EXPECT_FALSE(probe());
  EXPECT_EQ(m_watch->listings(), 2);
}

TEST_F(CodexCLIProbeTest, WithoutTheCommandTheyAreReadOnce) {
  m_environment = Environment().with(u"PATH"_s, m_folder.path());
  EXPECT_FALSE(probe());
  EXPECT_EQ(m_watch->listings(), 1);
}

TEST_F(CodexCLIProbeTest, WithTheCommandsSwitchedOffTheyAreReadOnce) {
  hasCodex();
  m_environment = m_environment.with(u"MORVO_DISABLE_CLI_PROBES"_s, u"1"_s);
  EXPECT_FALSE(probe());
  EXPECT_EQ(m_watch->listings(), 1);
}

TEST_F(CodexCLIProbeTest, WhatTheFirstReadingFindsStands) {
  hasCodex();
  putFile(u"home/.codex/sessions/log.jsonl"_s, R"({"rate_limits":{"primary":{"used_percent":7}}})");
  EXPECT_EQ(probe(), LiveRateLimit{.primaryPct = 7});
  EXPECT_EQ(m_watch->listings(), 1);
}

} // namespace
} // namespace morvo
