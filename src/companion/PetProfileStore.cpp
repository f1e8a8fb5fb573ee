#include "companion/PetProfileStore.h"

#include "base/Json.h"
#include "base/SystemFileLayer.h"

namespace morvo::PetProfileStore {

PetProfile load(const PetFiles &files, const QString &personaId) {
  if (!PetFiles::isPlainName(personaId)) {
    return {};
  }
  SystemFileLayer layer;
  const auto content = layer.read(files.userDirectory(personaId) + QStringLiteral("/profile.json"));
  const auto json = content ? Json::parseObject(*content) : std::nullopt;
  return json ? petProfileFromJson(*json) : PetProfile{};
}

} // namespace morvo::PetProfileStore
