#pragma once

#include "base/Environment.h"
#include "platform/HomeFolder.h"
#include "platform/SingleInstance.h"

#include <QLocalServer>
#include <QLockFile>

#include <chrono>
#include <deque>
#include <memory>

namespace morvo {

/// One instance for a home folder: a lock file in its `.morvo` decides who is first, whatever the
/// environment of the start; a local socket takes the words of later starts, and a file beside the
/// lock says where it stands, since a home's path may be too long for a socket. All of it survives
/// a killed first instance. Needs the event loop to take words; `settle` itself works without one.
class LocalSingleInstance final : public SingleInstance {
public:
  /// A later start waits so long, all in all, for the first instance to take its words.
  static constexpr std::chrono::milliseconds handOverDeadline{3000};
  /// Words longer than this, together and encoded, are refused.
  static constexpr qsizetype longestWords = qsizetype{64} << 10U;

  /// The socket stands in `XDG_RUNTIME_DIR`; where that is missing or not the user's own, in a
  /// folder of the user's below the temporary folder. A first instance that finds no folder for it
  /// takes no words.
  LocalSingleInstance(HomeFolder home, const Environment &environment,
                      std::chrono::milliseconds deadline = handOverDeadline);
  LocalSingleInstance(const LocalSingleInstance &) = delete;
  LocalSingleInstance &operator=(const LocalSingleInstance &) = delete;
  ~LocalSingleInstance() override;

  [[nodiscard]] Role settle(const QStringList &words) override;
  /// Words that came before there was a handler are kept for it.
  void onWords(std::function<void(QStringList)> handler) override;

private:
  [[nodiscard]] QString file(const QString &name) const;
  [[nodiscard]] bool listen();
  void announce(const QString &socketPath);
  [[nodiscard]] bool handOver(const QStringList &words) const;
  void takeConnections();
  void take(QLocalSocket &socket);
  void deliver();

  HomeFolder m_home;
  QString m_socketFolder;
  std::chrono::milliseconds m_deadline;
  std::unique_ptr<QLockFile> m_lock;
  std::unique_ptr<QLocalServer> m_server;
  std::function<void(QStringList)> m_handler;
  std::deque<QStringList> m_waiting;
};

} // namespace morvo
