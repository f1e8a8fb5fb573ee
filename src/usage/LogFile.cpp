#include "usage/LogFile.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <functional>
#include <iterator>
#include <memory>
#include <ranges>
#include <utility>

namespace morvo {
namespace {

using Folder = std::unique_ptr<DIR, decltype([](DIR *folder) { ::closedir(folder); })>;

bool hasExtension(std::string_view name, std::span<const std::string_view> extensions) {
  const std::size_t dot = name.rfind('.');
  // What begins with its only dot is a hidden name, not an extension.
  return dot != std::string_view::npos && dot > 0 &&
         std::ranges::find(extensions, name.substr(dot + 1)) != extensions.end();
}

/// What stands in one folder.
struct Contents {
  std::vector<LogFile> logs;
  std::vector<std::string> folders;
};

/// Walks the folders of one search.
class Walk {
public:
  Walk(std::span<const std::string_view> extensions, WallTime since, std::size_t most)
      : m_extensions(extensions), m_since(since), m_most(most) {}

  std::vector<LogFile> from(const std::string &root, const std::stop_token &stop) {
    std::vector<LogFile> found;
    std::vector<std::string> folders{root};
    while (!folders.empty() && found.size() < m_most && !stop.stop_requested()) {
      const std::string path = std::move(folders.back());
      folders.pop_back();
      Contents contents = contentsOf(path);
      std::ranges::sort(contents.logs, {}, &LogFile::path);
      std::ranges::sort(contents.folders, std::ranges::greater());
      const std::size_t room = std::min(contents.logs.size(), m_most - found.size());
      std::ranges::move(contents.logs | std::views::take(room), std::back_inserter(found));
      std::ranges::move(contents.folders, std::back_inserter(folders));
    }
    return found;
  }

private:
  [[nodiscard]] Contents contentsOf(const std::string &path) const {
    Contents contents;
    const Folder folder{::opendir(path.c_str())};
    while (const dirent *const entry = folder ? ::readdir(folder.get()) : nullptr) {
      const std::string_view name = entry->d_name;
      if (name == "." || name == "..") {
        continue;
      }
      // Some file systems do not tell a kind with the name.
      const bool isUnknown = entry->d_type == DT_UNKNOWN;
      if (entry->d_type == DT_DIR) {
        contents.folders.push_back(path + '/' + entry->d_name);
      } else if (isUnknown || (entry->d_type == DT_REG && hasExtension(name, m_extensions))) {
        look(::dirfd(folder.get()), path, entry->d_name, contents);
      }
    }
    return contents;
  }

  /// Adds the entry where it belongs; a link, and what cannot be looked at, nowhere.
  void look(int folder, const std::string &path, const char *name, Contents &contents) const {
    struct stat info{};
    if (::fstatat(folder, name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
      return;
    }
    if (S_ISDIR(info.st_mode)) {
      contents.folders.push_back(path + '/' + name);
      return;
    }
    const FileIdentity identity = FileIdentity::of(info);
    if (S_ISREG(info.st_mode) && hasExtension(name, m_extensions) &&
        identity.modifiedAt() >= m_since) {
      contents.logs.push_back(
          {.path = path + '/' + name, .identity = identity, .hasOtherNames = info.st_nlink > 1});
    }
  }

  std::span<const std::string_view> m_extensions;
  WallTime m_since;
  std::size_t m_most;
};

} // namespace

std::vector<LogFile> LogFile::changedSince(const std::string &folder,
                                           std::span<const std::string_view> extensions,
                                           WallTime since, const std::stop_token &stop,
                                           std::size_t most) {
  return Walk(extensions, since, most).from(folder, stop);
}

} // namespace morvo
