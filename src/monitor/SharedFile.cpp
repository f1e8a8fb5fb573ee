#include "monitor/SharedFile.h"

#include "base/AtomicFile.h"

namespace morvo::SharedFile {

std::expected<void, HookError> change(FileLayer &files, const QString &path, const Change &change) {
  for (int attempt = 0; attempt < attempts; ++attempt) {
    const auto old = AtomicFile::present(files, path);
    if (!old) {
      return std::unexpected(HookError{HookError::Kind::fileUnreadable, path, old.error()});
    }
    const auto content = change(old->value_or(QByteArray()));
    if (!content) {
      return std::unexpected(content.error());
    }
    const auto replaced = AtomicFile::replaceIfUnchanged(files, path, *old, *content);
    if (!replaced) {
      return std::unexpected(HookError{HookError::Kind::fileNotWritten, path, replaced.error()});
    }
    if (*replaced) {
      return {};
    }
  }
  return std::unexpected(HookError{HookError::Kind::fileBusy, path, {}});
}

} // namespace morvo::SharedFile
