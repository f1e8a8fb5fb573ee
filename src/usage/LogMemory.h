#pragma once

#include "usage/LogFile.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <stop_token>
#include <string>
#include <system_error>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

namespace morvo {

/// What is remembered of many logs. A file with several names is one log. `Log` is `ClaudeLog` or a
/// `LastRecordLog`. Not thread-safe.
template <typename Log> class LogMemory {
public:
  /// Reads what the files say beyond what is known, the largest first, and forgets the logs that
  /// are not among them.
  void update(const std::vector<LogFile> &files, WallTime since, const std::stop_token &stop) {
    forgetOthers(files);
    std::vector<Job> jobs = jobsFor(files, since);
    std::ranges::sort(jobs, std::ranges::greater(), &Job::bytes);
    std::int64_t bytes = 0;
    for (const Job &job : jobs) {
      bytes += job.bytes;
    }
    std::atomic<std::size_t> next = 0;
    const auto work = [&jobs, &next, since, &stop] {
      typename Log::Tools tools;
      for (std::size_t i = next++; i < jobs.size() && !stop.stop_requested(); i = next++) {
        jobs[i].log->update(jobs[i].file->path, since, tools, stop);
      }
    };
    if (jobs.size() > 1 && bytes >= worthAnotherThread) {
      const std::jthread second = threadFor(work);
      work();
    } else if (!jobs.empty()) {
      work();
    }
  }

  /// What is known of the file; after `update` it is there.
  [[nodiscard]] const Log &of(const LogFile &file) const { return m_logs.at(keyOf(file)); }

private:
  /// None where no thread is to be had: the work is then done alone.
  template <typename Work> [[nodiscard]] static std::jthread threadFor(const Work &work) {
    try {
      return std::jthread(work);
    } catch (const std::system_error &) {
      return {};
    }
  }

  /// Less is read before another thread has begun.
  static constexpr std::int64_t worthAnotherThread = std::int64_t{2} << 20U;

  /// The device and the number of a file, and its path where it has no other: some file systems
  /// give one number to several files.
  using Key = std::tuple<std::uint64_t, std::uint64_t, std::string>;

  struct Job {
    Log *log = nullptr;
    const LogFile *file = nullptr;
    std::int64_t bytes = 0;
  };

  static Key keyOf(const LogFile &file) {
    return {file.identity.device, file.identity.inode,
            file.hasOtherNames ? std::string() : file.path};
  }

  void forgetOthers(const std::vector<LogFile> &files) {
    std::map<Key, Log> logs;
    for (const LogFile &file : files) {
      const Key key = keyOf(file);
      if (auto known = m_logs.extract(key)) {
        logs.insert(std::move(known));
      } else {
        logs.try_emplace(key);
      }
    }
    m_logs = std::move(logs);
  }

  /// One for each log that is not known as it is now: a file may have several names.
  std::vector<Job> jobsFor(const std::vector<LogFile> &files, WallTime since) {
    std::map<Key, Job> jobs;
    for (const LogFile &file : files) {
      Log &log = m_logs.at(keyOf(file));
      if (!log.knows(file.identity, since)) {
        jobs.try_emplace(
            keyOf(file),
            Job{.log = &log, .file = &file, .bytes = log.bytesMissing(file.identity, since)});
      }
    }
    std::vector<Job> list;
    list.reserve(jobs.size());
    for (const auto &[key, job] : jobs) {
      list.push_back(job);
    }
    return list;
  }

  std::map<Key, Log> m_logs;
};

} // namespace morvo
