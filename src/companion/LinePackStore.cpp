#include "companion/LinePackStore.h"

#include "base/Json.h"
#include "base/SystemFileLayer.h"

namespace morvo::LinePackStore {

std::optional<LinePack> load(const PetFiles &files, const QString &personaId) {
  SystemFileLayer layer;
  for (const QString &path : files.candidates(personaId, QStringLiteral("lines.json"))) {
    const auto content = layer.read(path);
    const auto json = content ? Json::parseObject(*content) : std::nullopt;
    if (auto pack = json ? linePackFromJson(*json) : std::nullopt) {
      return pack;
    }
  }
  return std::nullopt;
}

} // namespace morvo::LinePackStore
