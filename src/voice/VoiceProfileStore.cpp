#include "voice/VoiceProfileStore.h"

#include "base/Json.h"
#include "base/SystemFileLayer.h"

namespace morvo::VoiceProfileStore {

VoiceProfile load(const QStringList &candidates) {
  SystemFileLayer files;
  for (const QString &path : candidates) {
    const auto content = files.read(path);
    const auto json = content ? Json::parseObject(*content) : std::nullopt;
    if (json) {
      return voiceProfileFromJson(*json);
    }
  }
  return {};
}

} // namespace morvo::VoiceProfileStore
