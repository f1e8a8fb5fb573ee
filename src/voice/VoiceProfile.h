#pragma once

#include <QJsonObject>
#include <QString>

#include <optional>

namespace morvo {

/// Which voice speaks.
enum class VoiceProvider { system, qwenTTS, doubao, cosyClone };

/// "system", "qwenTTS", …
[[nodiscard]] QString rawValue(VoiceProvider provider);
/// The provider of that raw value; `qwenTTS` for an unknown one.
[[nodiscard]] VoiceProvider voiceProvider(const QString &rawValue);

/// How one persona speaks.
struct VoiceProfile {
  VoiceProvider provider = VoiceProvider::qwenTTS;
  QString aiVoice = QStringLiteral("Cherry");
  /// How the line is to be delivered, in words for the speech model.
  QString styleInstruction =
      QStringLiteral("自然、轻松、像近距离聊天，不要播音腔；句子短一点，语气有陪伴感。");
  std::optional<QString> voiceId; ///< Voice of the system's synthesizer.
  double rate = 0.5;              ///< Speed of the system's voice, 0 to 1.
  double pitch = 1.0;             ///< Pitch factor of the system's voice.
  std::optional<QString> clonedVoiceId;
  std::optional<QString> clonedLabel;

  bool operator==(const VoiceProfile &) const = default;
};

/// Every key is optional; a missing one, or one of another type, gives the default.
[[nodiscard]] VoiceProfile voiceProfileFromJson(const QJsonObject &json);
[[nodiscard]] QJsonObject toJson(const VoiceProfile &profile);

} // namespace morvo
