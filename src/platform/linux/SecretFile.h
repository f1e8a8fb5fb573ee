#pragma once

#include "base/FileLayer.h"
#include "platform/linux/SecretKey.h"

#include <map>
#include <mutex>
#include <optional>

namespace morvo {

/// The file in which secrets stand that no service took, for the user alone (mode 0600).
/// Thread-safe.
class SecretFile {
public:
  /// What is to hold once a service takes it; nothing in place of a value means that the secret is
  /// to be removed there.
  using Entries = std::map<SecretKey, std::optional<QString>>;

  /// `files` must outlive the object.
  SecretFile(FileLayer &files, QString path);

  /// All entries. A missing or damaged file has none.
  [[nodiscard]] FileLayer::Result<Entries> read() const;
  /// Sets these entries and keeps the others.
  [[nodiscard]] FileLayer::Result<void> put(const Entries &entries);
  /// Takes the entry out. The file goes with its last entry.
  [[nodiscard]] FileLayer::Result<void> erase(const SecretKey &key);

  [[nodiscard]] const QString &path() const { return m_path; }

private:
  [[nodiscard]] FileLayer::Result<Entries> parse() const;
  [[nodiscard]] FileLayer::Result<void> write(const Entries &entries);

  FileLayer *m_files;
  QString m_path;
  mutable std::mutex m_mutex;
};

} // namespace morvo
