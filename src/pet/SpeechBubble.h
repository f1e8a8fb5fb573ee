#pragma once

#include "pet/BubbleLook.h"

#include <QImage>
#include <QPainter>
#include <QString>
#include <QStringList>

namespace morvo {

/// What the pet says, in a rounded rectangle with a soft shadow. Text that does not fit in the
/// room given ends in "…". Laid out once, painted from a picture. Main thread. Device-independent
/// pixels.
class SpeechBubble {
public:
  /// No bubble: nothing is painted.
  SpeechBubble() = default;
  /// `room` is the space for the rectangle with its shadow. Text of white space only is no bubble.
  SpeechBubble(const QString &text, const BubbleLook &look, QSize room);

  [[nodiscard]] bool isEmpty() const { return m_lines.isEmpty(); }
  /// The rectangle's size without its shadow.
  [[nodiscard]] QSize size() const { return m_size; }
  [[nodiscard]] const QStringList &lines() const { return m_lines; }
  /// Where the rectangle stands when the bubble ends at the bottom of `area`, in its middle.
  [[nodiscard]] QRect placeIn(const QRect &area) const;
  void paint(QPainter &painter, const QRect &area, double opacity, double devicePixelRatio);

  /// Reach of the shadow beyond the rectangle, on every side.
  static constexpr int shadowReach = 5;

private:
  [[nodiscard]] QImage picture(double devicePixelRatio) const;

  BubbleLook m_look;
  QStringList m_lines;
  QSize m_size;
  QImage m_picture;
};

} // namespace morvo
