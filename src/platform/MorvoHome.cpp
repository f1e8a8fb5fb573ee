#include "platform/MorvoHome.h"

#include "base/SystemFileLayer.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace morvo::MorvoHome {
namespace {

constexpr std::uint32_t ownerOnlyFolder = 0700;
constexpr mode_t ownerOnlyFile = 0600;
constexpr mode_t forOthers = 0077;

/// Requests, decisions and what the pet remembers lie below it, whoever made the folder.
void closeToOthers(const QString &folder) {
  const int descriptor =
      ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) {
    return;
  }
  struct stat status{};
  if (::fstat(descriptor, &status) == 0 && (status.st_mode & forOthers) != 0) {
    static_cast<void>(::fchmod(descriptor, status.st_mode & ownerOnlyFolder));
  }
  ::close(descriptor);
}

} // namespace

void ensure(const HomeFolder &home) {
  SystemFileLayer files;
  if (!files.makeDirectories(directory(home), ownerOnlyFolder)) {
    return;
  }
  closeToOthers(directory(home));
  closeToOthers(decisions(home));
  const int descriptor = ::open(QFile::encodeName(inbox(home)).constData(),
                                O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerOnlyFile);
  if (descriptor >= 0) {
    ::close(descriptor);
  }
}

QString directory(const HomeFolder &home) { return home.file(QStringLiteral(".morvo")); }

QString inbox(const HomeFolder &home) { return home.file(QStringLiteral(".morvo/inbox.jsonl")); }

QString hookScript(const HomeFolder &home) { return home.file(QStringLiteral(".morvo/hook.sh")); }

QString permissionScript(const HomeFolder &home) {
  return home.file(QStringLiteral(".morvo/perm.sh"));
}

QString decisions(const HomeFolder &home) { return home.file(QStringLiteral(".morvo/decisions")); }

QString petDirectory(const HomeFolder &home, const QString &personaId) {
  return home.file(QStringLiteral(".morvo/pets/") + personaId);
}

} // namespace morvo::MorvoHome
