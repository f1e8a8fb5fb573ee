#include "voice/VoiceProfile.h"

#include <array>
#include <utility>

namespace morvo {
namespace {

constexpr std::array<std::pair<VoiceProvider, QStringView>, 4> providers{{
    {VoiceProvider::system, u"system"},
    {VoiceProvider::qwenTTS, u"qwenTTS"},
    {VoiceProvider::doubao, u"doubao"},
    {VoiceProvider::cosyClone, u"cosyClone"},
}};

std::optional<QString> text(const QJsonValue &value) {
  return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

} // namespace

QString rawValue(VoiceProvider provider) {
  for (const auto &[known, name] : providers) {
    if (known == provider) {
      return name.toString();
    }
  }
  Q_UNREACHABLE();
}

VoiceProvider voiceProvider(const QString &rawValue) {
  for (const auto &[known, name] : providers) {
    if (name == rawValue) {
      return known;
    }
  }
  return VoiceProvider::qwenTTS;
}

VoiceProfile voiceProfileFromJson(const QJsonObject &json) {
  VoiceProfile profile;
  profile.provider = voiceProvider(json.value(u"provider").toString());
  profile.aiVoice = text(json.value(u"aiVoice")).value_or(profile.aiVoice);
  profile.styleInstruction =
      text(json.value(u"styleInstruction")).value_or(profile.styleInstruction);
  profile.voiceId = text(json.value(u"voiceId"));
  profile.rate = json.value(u"rate").toDouble(profile.rate);
  profile.pitch = json.value(u"pitch").toDouble(profile.pitch);
  profile.clonedVoiceId = text(json.value(u"clonedVoiceId"));
  profile.clonedLabel = text(json.value(u"clonedLabel"));
  return profile;
}

QJsonObject toJson(const VoiceProfile &profile) {
  QJsonObject json{
      {QStringLiteral("provider"), rawValue(profile.provider)},
      {QStringLiteral("aiVoice"), profile.aiVoice},
      {QStringLiteral("styleInstruction"), profile.styleInstruction},
      {QStringLiteral("rate"), profile.rate},
      {QStringLiteral("pitch"), profile.pitch},
  };
  const auto insert = [&json](const QString &key, const std::optional<QString> &value) {
    if (value) {
      json.insert(key, *value);
    }
  };
  insert(QStringLiteral("voiceId"), profile.voiceId);
  insert(QStringLiteral("clonedVoiceId"), profile.clonedVoiceId);
  insert(QStringLiteral("clonedLabel"), profile.clonedLabel);
  return json;
}

} // namespace morvo
