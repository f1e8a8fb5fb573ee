#include "pet/RegularFile.h"

#include <fcntl.h>
#include <unistd.h>

namespace morvo::RegularFile {

std::optional<struct stat> open(const QString &path, QFile &file) {
  const int descriptor =
      ::open(QFile::encodeName(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    return std::nullopt;
  }
  struct stat status{};
  if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
      !file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
    ::close(descriptor);
    return std::nullopt;
  }
  return status;
}

} // namespace morvo::RegularFile
