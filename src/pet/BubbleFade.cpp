#include "pet/BubbleFade.h"

#include <algorithm>

namespace morvo {
namespace {

constexpr double changeSeconds = 0.2;

} // namespace

void BubbleFade::change(SpeechBubble bubble, Instant now) {
  m_previous = std::move(m_present);
  m_present = std::move(bubble);
  m_since = now;
}

void BubbleFade::settle(Instant now) {
  if (m_since && progress(now) >= 1) {
    m_since.reset();
    m_previous = {};
  }
}

void BubbleFade::paint(QPainter &painter, const QRect &area, Instant now, double devicePixelRatio) {
  const double shown = progress(now);
  m_previous.paint(painter, area, 1 - shown, devicePixelRatio);
  m_present.paint(painter, area, shown, devicePixelRatio);
}

double BubbleFade::progress(Instant now) const {
  if (!m_since) {
    return 1;
  }
  const double part = std::clamp(inSeconds(now - *m_since) / changeSeconds, 0.0, 1.0);
  return part < 0.5 ? 2 * part * part : 1 - 2 * (1 - part) * (1 - part);
}

} // namespace morvo
