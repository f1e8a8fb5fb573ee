#pragma once

#include "monitor/HookContext.h"
#include "support/FailingFileLayer.h"

#include <QTemporaryDir>

#include <nlohmann/json.hpp>

namespace morvo::test {

/// An empty home folder with blanks and Chinese letters in its name, gone at the end.
class HookHome {
public:
  explicit HookHome(const QString &name = QStringLiteral("家 目录"));

  [[nodiscard]] HomeFolder home() const { return m_home; }
  [[nodiscard]] QString path(const QString &relative) const { return m_home.file(relative); }
  /// A context with these variables.
  [[nodiscard]] HookContext context(const QHash<QString, QString> &variables = {});

  /// Writes a file below the home folder, with its folders.
  void put(const QString &relative, const QByteArray &text);
  /// The file's bytes, or "<none>".
  [[nodiscard]] QByteArray get(const QString &relative);
  /// The file's JSON; a discarded value when it is none.
  [[nodiscard]] nlohmann::json json(const QString &relative);
  [[nodiscard]] std::uint32_t mode(const QString &relative);

private:
  QTemporaryDir m_folder;
  HomeFolder m_home;
  /// Fails nothing; it is the real file system without waiting for the disk.
  FailingFileLayer m_files;
};

} // namespace morvo::test
