#pragma once

#include "voice/VoiceHealth.h"

#include <functional>

namespace morvo {

/// Speaks lines aloud. Main thread.
class Speech {
public:
  virtual ~Speech() = default;

  /// Returns at once; `onStatus` is told what becomes of the line, perhaps several times.
  virtual void speak(const QString &text, const VoiceProfile &profile,
                     std::function<void(VoiceHealth)> onStatus) = 0;
};

} // namespace morvo
