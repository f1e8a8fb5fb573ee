#include "platform/linux/HomeFolders.h"

#include <QDir>
#include <QFile>

#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace morvo::HomeFolders {
namespace {

constexpr std::size_t entrySize = 16384;

QString ofUserDatabase() {
  passwd entry{};
  passwd *found = nullptr;
  std::vector<char> buffer(entrySize);
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr) {
    return QFile::decodeName(found->pw_dir);
  }
  // A user without an entry (some containers) owns no home; the root folder fails visibly at the
  // first write instead of scattering files.
  return QStringLiteral("/");
}

} // namespace

HomeFolder find(const Environment &environment) {
  const auto named = environment.nonEmpty(QStringLiteral("MORVO_HOME"));
  return {QDir::cleanPath(named ? QDir(*named).absolutePath() : ofUserDatabase())};
}

} // namespace morvo::HomeFolders
