#include "monitor/SettingsLock.h"

#include "platform/MorvoHome.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace morvo {
namespace {

constexpr mode_t ownerOnly = 0600;
constexpr std::chrono::milliseconds betweenTries{5};

int openLock(const HomeFolder &home) {
  const QString path = MorvoHome::directory(home) + QStringLiteral("/.lock");
  // O_NONBLOCK is for a pipe in the file's place.
  return ::open(QFile::encodeName(path).constData(),
                O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, ownerOnly);
}

} // namespace

SettingsLock::SettingsLock(const HomeFolder &home) : m_descriptor(openLock(home)) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (m_descriptor >= 0 && ::flock(m_descriptor, LOCK_EX | LOCK_NB) != 0 &&
         (errno == EWOULDBLOCK || errno == EINTR) && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(betweenTries);
  }
}

SettingsLock::~SettingsLock() {
  if (m_descriptor >= 0) {
    ::close(m_descriptor);
  }
}

} // namespace morvo
