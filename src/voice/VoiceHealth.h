#pragma once

#include "voice/VoiceProfile.h"

#include <variant>

namespace morvo {

/// What the voice is doing, or why it is not heard.
namespace voice_health {
struct Synthesizing {
  VoiceProvider provider;
  bool operator==(const Synthesizing &) const = default;
};
struct Ready {
  VoiceProvider provider;
  bool operator==(const Ready &) const = default;
};
struct CacheHit {
  VoiceProvider provider;
  bool operator==(const CacheHit &) const = default;
};
struct MissingCredential {
  VoiceProvider provider;
  bool operator==(const MissingCredential &) const = default;
};
struct AiUnavailable {
  VoiceProvider provider;
  bool operator==(const AiUnavailable &) const = default;
};
struct CloneFailed {
  QString reason;
  bool operator==(const CloneFailed &) const = default;
};
struct Idle {
  bool operator==(const Idle &) const = default;
};
struct SystemSpeaking {
  bool operator==(const SystemSpeaking &) const = default;
};
} // namespace voice_health

using VoiceHealth =
    std::variant<voice_health::Synthesizing, voice_health::Ready, voice_health::CacheHit,
                 voice_health::MissingCredential, voice_health::AiUnavailable,
                 voice_health::CloneFailed, voice_health::Idle, voice_health::SystemSpeaking>;

} // namespace morvo
