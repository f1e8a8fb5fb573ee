#pragma once

#include "companion/MorvoPersona.h"
#include "pet/IdleMotion.h"

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QSizeF>

class QPainter;

namespace morvo {

/// The picture of a persona in lists and panels: its own picture if it has one that loads, else an
/// emblem, else the default pet as a drawing. Loads the picture once, when it is made. Main thread.
class PersonaAvatar {
public:
  /// The box that it is laid out in, in points.
  static constexpr QSizeF frame{130, 120};

  /// What depends on the moment.
  struct Look {
    QString mood;
    QColor accent;        ///< Of the mood.
    double fontScale = 1; ///< Of the emblem's letter.
  };

  enum class Kind { picture, emblem, drawing };

  explicit PersonaAvatar(MorvoPersona persona);

  [[nodiscard]] Kind kind() const;
  /// The emblem's sign: the first letter or emoji of the persona's name; empty for a name without
  /// any.
  [[nodiscard]] QString sign() const;

  /// How it moves in that mood.
  [[nodiscard]] static IdleMotion motion(const QString &mood);

  /// Fits the box into `target`, in its middle, as it stands `time` seconds from any fixed moment.
  /// The glow reaches beyond the box.
  void paint(QPainter &painter, const QRectF &target, const Look &look, double time) const;

private:
  void paintPicture(QPainter &painter, const Look &look) const;
  void paintEmblem(QPainter &painter, const Look &look) const;

  MorvoPersona m_persona;
  QImage m_picture;
};

} // namespace morvo
