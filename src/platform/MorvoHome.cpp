#include "platform/MorvoHome.h"

#include "base/SystemFileLayer.h"

#include <QFile>

#include <fcntl.h>
#include <unistd.h>

namespace morvo::MorvoHome {
namespace {

constexpr std::uint32_t ownerOnlyFolder = 0700;
constexpr mode_t ownerOnlyFile = 0600;

} // namespace

void ensure(const HomeFolder &home) {
  SystemFileLayer files;
  if (!files.makeDirectories(directory(home), ownerOnlyFolder)) {
    return;
  }
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

QString petDirectory(const HomeFolder &home, const QString &personaId) {
  return home.file(QStringLiteral(".morvo/pets/") + personaId);
}

} // namespace morvo::MorvoHome
