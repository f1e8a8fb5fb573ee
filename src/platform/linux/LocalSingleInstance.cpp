#include "platform/linux/LocalSingleInstance.h"

#include "base/AtomicFile.h"
#include "base/Diagnostics.h"
#include "base/SystemFileLayer.h"
#include "platform/MorvoHome.h"
#include "platform/linux/InstanceMessage.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>
#include <QUuid>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace morvo {
namespace {

/// Between two looks for the first instance's socket.
constexpr std::chrono::milliseconds connectPause{20};
/// A connection that has not said its words by then is cut off.
constexpr std::chrono::seconds longestConnection{5};
constexpr mode_t ownerOnly = 0700;
constexpr mode_t openToOthers = 0077;
constexpr std::uint32_t ownerOnlyFile = 0600;

/// Whether it is a folder (no link) that belongs to this user and that nobody else may enter.
bool isPrivateFolder(const QString &path) {
  struct stat info{};
  return ::lstat(QFile::encodeName(path).constData(), &info) == 0 && S_ISDIR(info.st_mode) &&
         info.st_uid == ::getuid() && (info.st_mode & openToOthers) == 0;
}

/// Empty when no folder can be trusted.
QString findFolder(const Environment &environment) {
  const auto runtime = environment.nonEmpty(QStringLiteral("XDG_RUNTIME_DIR"));
  if (runtime && QDir::isAbsolutePath(*runtime) && isPrivateFolder(QDir::cleanPath(*runtime))) {
    return QDir::cleanPath(*runtime);
  }
  const QString temporary =
      environment.nonEmpty(QStringLiteral("TMPDIR")).value_or(QStringLiteral("/tmp"));
  const QString folder =
      QDir::cleanPath(temporary) + QStringLiteral("/morvobar-%1").arg(::getuid());
  // An existing one is no failure: whose it is decides.
  static_cast<void>(::mkdir(QFile::encodeName(folder).constData(), ownerOnly));
  return isPrivateFolder(folder) ? folder : QString();
}

/// Different for each first instance, so that none meets the socket of a killed one.
QString socketName() {
  return QStringLiteral("morvobar-") + QUuid::createUuid().toString(QUuid::Id128);
}

bool isSameUser(const QLocalSocket &socket) {
  ucred peer{};
  socklen_t size = sizeof(peer);
  return ::getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer,
                      &size) == 0 &&
         peer.uid == ::getuid();
}

bool connectUntil(QLocalSocket &socket, const QString &announcement,
                  const QDeadlineTimer &deadline) {
  SystemFileLayer files;
  for (;;) {
    // Read anew each time: a first instance that has just begun announces its socket a moment
    // later.
    if (const auto path = files.read(announcement)) {
      socket.connectToServer(QFile::decodeName(*path));
      if (socket.waitForConnected(static_cast<int>(deadline.remainingTime()))) {
        return true;
      }
    }
    if (deadline.hasExpired()) {
      return false;
    }
    QThread::msleep(static_cast<unsigned long>(connectPause.count()));
  }
}

} // namespace

LocalSingleInstance::LocalSingleInstance(HomeFolder home, const Environment &environment,
                                         std::chrono::milliseconds deadline)
    : m_home(std::move(home)), m_socketFolder(findFolder(environment)), m_deadline(deadline) {}

LocalSingleInstance::~LocalSingleInstance() {
  // The socket goes before the lock, so that whoever is first next never meets a socket of ours.
  if (m_server) {
    m_server.reset();
    QFile::remove(file(QStringLiteral("instance.socket")));
  }
  m_lock.reset();
}

QString LocalSingleInstance::file(const QString &name) const {
  return MorvoHome::directory(m_home) + u'/' + name;
}

SingleInstance::Role LocalSingleInstance::settle(const QStringList &words) {
  MorvoHome::ensure(m_home);
  m_lock = std::make_unique<QLockFile>(file(QStringLiteral("instance.lock")));
  // Never stale by age, only by the death of its process.
  m_lock->setStaleLockTime(std::chrono::milliseconds::zero());
  if (m_lock->tryLock(0)) {
    if (!listen()) {
      Diagnostics::line(u"INSTANCE", u"no folder for a socket: later starts cannot be heard");
    }
    return Role::first;
  }
  const bool isHeld = m_lock->error() == QLockFile::LockFailedError;
  m_lock.reset();
  if (!isHeld) {
    return Role::unsettled;
  }
  return handOver(words) ? Role::handedOver : Role::unreachable;
}

void LocalSingleInstance::onWords(std::function<void(QStringList)> handler) {
  m_handler = std::move(handler);
  if (m_server) {
    QTimer::singleShot(0, m_server.get(), [this] { deliver(); });
  }
}

bool LocalSingleInstance::listen() {
  if (m_socketFolder.isEmpty()) {
    return false;
  }
  const QString path = m_socketFolder + u'/' + socketName();
  m_server = std::make_unique<QLocalServer>();
  m_server->setSocketOptions(QLocalServer::UserAccessOption);
  QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(),
                   [this] { takeConnections(); });
  if (!m_server->listen(path)) {
    m_server.reset();
    return false;
  }
  announce(path);
  return true;
}

void LocalSingleInstance::announce(const QString &socketPath) {
  SystemFileLayer files;
  const QString announcement = file(QStringLiteral("instance.socket"));
  // What a killed instance left behind goes with its announcement.
  if (const auto stale = files.read(announcement)) {
    const QString left = QFile::decodeName(*stale);
    if (QFileInfo(left).fileName().startsWith(QStringLiteral("morvobar-"))) {
      QLocalServer::removeServer(left);
    }
  }
  if (const auto written =
          AtomicFile::write(files, announcement, QFile::encodeName(socketPath),
                            {.mode = ownerOnlyFile, .forceMode = true, .directoryMode = ownerOnly});
      !written) {
    Diagnostics::line(u"INSTANCE", written.error().message());
  }
}

bool LocalSingleInstance::handOver(const QStringList &words) const {
  const auto message = InstanceMessage::encode(words, longestWords);
  if (!message) {
    return false;
  }
  const QDeadlineTimer deadline(m_deadline);
  QLocalSocket socket;
  if (!connectUntil(socket, file(QStringLiteral("instance.socket")), deadline)) {
    return false;
  }
  socket.write(*message);
  while (socket.bytesAvailable() == 0 &&
         socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) {
  }
  char answer = 0;
  return socket.getChar(&answer) && answer == InstanceMessage::acknowledgement;
}

void LocalSingleInstance::takeConnections() {
  while (QLocalSocket *socket = m_server->nextPendingConnection()) {
    QObject::connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
    if (!isSameUser(*socket)) {
      socket->abort();
      continue;
    }
    QObject::connect(socket, &QLocalSocket::readyRead, socket, [this, socket] { take(*socket); });
    QTimer::singleShot(longestConnection, socket, [socket] { socket->abort(); });
    take(*socket);
  }
}

void LocalSingleInstance::take(QLocalSocket &socket) {
  const auto words =
      InstanceMessage::decode(socket.peek(longestWords + sizeof(quint32)), longestWords);
  if (!words) {
    if (words.error() != InstanceMessage::Failure::incomplete) {
      socket.abort();
    }
    return;
  }
  QObject::disconnect(&socket, &QLocalSocket::readyRead, nullptr, nullptr);
  socket.putChar(InstanceMessage::acknowledgement);
  socket.flush();
  socket.disconnectFromServer();
  m_waiting.push_back(*words);
  deliver();
}

void LocalSingleInstance::deliver() {
  while (m_handler && !m_waiting.empty()) {
    const QStringList words = m_waiting.front();
    m_waiting.pop_front();
    m_handler(words);
  }
}

} // namespace morvo
