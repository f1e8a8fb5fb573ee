#include "platform/linux/LocalSingleInstance.h"

#include "platform/linux/InstanceMessage.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QThread>
#include <QTimer>

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace morvo {
namespace {

/// A first instance that has just taken the lock opens its socket a moment later.
constexpr std::chrono::milliseconds connectPause{20};
/// A connection that has not said its words by then is cut off.
constexpr std::chrono::seconds longestConnection{5};
constexpr mode_t ownerOnly = 0700;
constexpr mode_t openToOthers = 0077;
constexpr int hashLetters = 16;

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

QString nameOf(const HomeFolder &home) {
  const QString canonical = QFileInfo(home.path).canonicalFilePath();
  const QByteArray hash = QCryptographicHash::hash(
      QFile::encodeName(canonical.isEmpty() ? home.path : canonical), QCryptographicHash::Sha256);
  return QStringLiteral("morvobar-") + QString::fromLatin1(hash.toHex().first(hashLetters));
}

bool isSameUser(const QLocalSocket &socket) {
  ucred peer{};
  socklen_t size = sizeof(peer);
  return ::getsockopt(static_cast<int>(socket.socketDescriptor()), SOL_SOCKET, SO_PEERCRED, &peer,
                      &size) == 0 &&
         peer.uid == ::getuid();
}

bool connectUntil(QLocalSocket &socket, const QString &path, const QDeadlineTimer &deadline) {
  for (;;) {
    socket.connectToServer(path);
    if (socket.waitForConnected(static_cast<int>(deadline.remainingTime()))) {
      return true;
    }
    if (deadline.hasExpired()) {
      return false;
    }
    QThread::msleep(static_cast<unsigned long>(connectPause.count()));
  }
}

} // namespace

LocalSingleInstance::LocalSingleInstance(const HomeFolder &home, const Environment &environment,
                                         std::chrono::milliseconds deadline)
    : m_folder(findFolder(environment)), m_name(nameOf(home)), m_deadline(deadline) {}

LocalSingleInstance::~LocalSingleInstance() {
  // The socket goes before the lock, so that whoever is first next never meets a socket of ours.
  m_server.reset();
  m_lock.reset();
}

SingleInstance::Role LocalSingleInstance::settle(const QStringList &words) {
  if (m_folder.isEmpty()) {
    return Role::failed;
  }
  m_lock = std::make_unique<QLockFile>(m_folder + u'/' + m_name + QStringLiteral(".lock"));
  // Never stale by age, only by the death of its process.
  m_lock->setStaleLockTime(std::chrono::milliseconds::zero());
  if (m_lock->tryLock(0)) {
    return listen() ? Role::first : Role::failed;
  }
  const bool isHeld = m_lock->error() == QLockFile::LockFailedError;
  m_lock.reset();
  return isHeld && handOver(words) ? Role::handedOver : Role::failed;
}

void LocalSingleInstance::onWords(std::function<void(QStringList)> handler) {
  m_handler = std::move(handler);
  if (m_server) {
    QTimer::singleShot(0, m_server.get(), [this] { deliver(); });
  }
}

bool LocalSingleInstance::listen() {
  const QString path = m_folder + u'/' + m_name + QStringLiteral(".socket");
  m_server = std::make_unique<QLocalServer>();
  m_server->setSocketOptions(QLocalServer::UserAccessOption);
  QObject::connect(m_server.get(), &QLocalServer::newConnection, m_server.get(),
                   [this] { takeConnections(); });
  QLocalServer::removeServer(path);
  return m_server->listen(path);
}

bool LocalSingleInstance::handOver(const QStringList &words) const {
  const auto message = InstanceMessage::encode(words, longestWords);
  if (!message) {
    return false;
  }
  const QDeadlineTimer deadline(m_deadline);
  QLocalSocket socket;
  if (!connectUntil(socket, m_folder + u'/' + m_name + QStringLiteral(".socket"), deadline)) {
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
