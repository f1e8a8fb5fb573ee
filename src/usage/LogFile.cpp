#include "usage/LogFile.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
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

/// Walks the folders of one search.
class Walk {
public:
  Walk(std::span<const std::string_view> extensions, WallTime since)
      : m_extensions(extensions), m_since(since) {}

  std::vector<LogFile> from(const std::string &root, const std::stop_token &stop) {
    m_folders.push_back(root);
    while (!m_folders.empty() && !stop.stop_requested()) {
      const std::string path = std::move(m_folders.back());
      m_folders.pop_back();
      if (const Folder folder{::opendir(path.c_str())}) {
        readFolder(folder.get(), path);
      }
    }
    return std::move(m_files);
  }

private:
  void readFolder(DIR *folder, const std::string &path) {
    while (const dirent *const entry = ::readdir(folder)) {
      const std::string_view name = entry->d_name;
      if (name == "." || name == "..") {
        continue;
      }
      // Some file systems do not tell a kind with the name.
      const bool isUnknown = entry->d_type == DT_UNKNOWN;
      if (entry->d_type == DT_DIR) {
        m_folders.push_back(path + '/' + entry->d_name);
      } else if (isUnknown || (entry->d_type == DT_REG && hasExtension(name, m_extensions))) {
        look(::dirfd(folder), path, entry->d_name);
      }
    }
  }

  void look(int folder, const std::string &path, const char *name) {
    struct stat info{};
    if (::fstatat(folder, name, &info, AT_SYMLINK_NOFOLLOW) != 0) {
      return;
    }
    if (S_ISDIR(info.st_mode)) {
      m_folders.push_back(path + '/' + name);
      return;
    }
    const FileIdentity identity = FileIdentity::of(info);
    if (S_ISREG(info.st_mode) && hasExtension(name, m_extensions) &&
        identity.modifiedAt() >= m_since) {
      m_files.push_back(
          {.path = path + '/' + name, .identity = identity, .hasOtherNames = info.st_nlink > 1});
    }
  }

  std::span<const std::string_view> m_extensions;
  WallTime m_since;
  std::vector<std::string> m_folders;
  std::vector<LogFile> m_files;
};

} // namespace

std::vector<LogFile> LogFile::changedSince(const std::string &folder,
                                           std::span<const std::string_view> extensions,
                                           WallTime since, const std::stop_token &stop) {
  return Walk(extensions, since).from(folder, stop);
}

} // namespace morvo
