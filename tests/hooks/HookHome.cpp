#include "hooks/HookHome.h"

#include "base/AtomicFile.h"

#include <gtest/gtest.h>

namespace morvo::test {

HookHome::HookHome(const QString &name) : m_home{m_folder.filePath(name)} {
  EXPECT_TRUE(m_files.makeDirectories(m_home.path, 0755).has_value());
}

HookContext HookHome::context(const QHash<QString, QString> &variables) {
  return {.home = m_home, .environment = Environment(variables), .files = &m_files};
}

void HookHome::put(const QString &relative, const QByteArray &text) {
  ASSERT_TRUE(AtomicFile::write(m_files, path(relative), text).has_value());
}

QByteArray HookHome::get(const QString &relative) {
  return m_files.read(path(relative)).value_or("<none>");
}

nlohmann::json HookHome::json(const QString &relative) {
  return nlohmann::json::parse(get(relative).toStdString(), nullptr, false);
}

std::uint32_t HookHome::mode(const QString &relative) {
  const auto status = m_files.status(path(relative));
  return status ? status->mode : 0;
}

} // namespace morvo::test
