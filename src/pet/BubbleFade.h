#pragma once

#include "base/Time.h"
#include "pet/SpeechBubble.h"

#include <optional>

namespace morvo {

/// The speech bubble in time: a new text fades in while the old one fades out, an empty text only
/// fades out. Main thread.
class BubbleFade {
public:
  /// Starts the change to `bubble`; one still under way is cut short.
  void change(SpeechBubble bubble, Instant now);
  /// Shows the same words otherwise, at once: the look has changed, or the room.
  void replace(SpeechBubble bubble) { m_present = std::move(bubble); }

  /// Whether the picture changes with time; true until `settle` finds the change complete.
  [[nodiscard]] bool isRunning() const { return m_since.has_value(); }
  /// Ends a change that is complete at `now`. To be called after painting for `now`.
  void settle(Instant now);
  void paint(QPainter &painter, const QRect &area, Instant now, double devicePixelRatio);
  /// The bubble shown, or fading in.
  [[nodiscard]] const SpeechBubble &present() const { return m_present; }

private:
  /// From 0 to 1, eased in and out.
  [[nodiscard]] double progress(Instant now) const;

  SpeechBubble m_present;
  SpeechBubble m_previous;
  std::optional<Instant> m_since;
};

} // namespace morvo
