#include "pet/PetPackStore.h"

#include "base/AtomicFile.h"
#include "base/Json.h"
#include "base/SystemFileLayer.h"
#include "pet/PetPackCache.h"

namespace morvo::PetPackStore {
namespace {

const QString manifest = QStringLiteral("manifest.json");

PetPackCache &cache() {
  // One a thread, so that a worker that looks at a pack needs no lock.
  thread_local PetPackCache packs;
  return packs;
}

} // namespace

std::optional<PetPack> load(const PetFiles &files, const QString &personaId) {
  for (const QString &path : files.candidates(personaId, manifest)) {
    if (auto pack = cache().load(path)) {
      return pack;
    }
  }
  return std::nullopt;
}

void save(const PetFiles &files, const PetPack &pack, const QString &personaId) {
  if (!PetFiles::isPlainName(personaId)) {
    return;
  }
  SystemFileLayer layer;
  const QString path = files.userDirectory(personaId) + u'/' + manifest;
  // Whoever needs to know whether it worked reads the pack back.
  static_cast<void>(AtomicFile::write(layer, path, Json::pretty(toJson(pack))));
}

} // namespace morvo::PetPackStore
