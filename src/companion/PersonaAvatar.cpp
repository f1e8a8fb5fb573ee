#include "companion/PersonaAvatar.h"

#include "pet/MorvoView.h"
#include "pet/PetPalette.h"
#include "pet/SoftDisc.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <utility>

namespace morvo {
namespace {

constexpr int tierOfDrawing = 1;
constexpr SoftDisc glow{.diameter = 120, .blur = 20, .opacity = 0.3};
constexpr QSizeF pictureFrame(120, 116);
/// A stored picture is kept no larger than this, enough for its frame on the densest screen.
constexpr int largestPicture = 512;
constexpr double emblemSide = 92;
constexpr double signSize = 42;
constexpr double riding = 3;
constexpr double hypeSpeed = 2.3;
constexpr double drowsySpeed = 0.7;
constexpr double usualSpeed = 1.2;

QRectF centred(QSizeF size) { return {QPointF(-size.width() / 2, -size.height() / 2), size}; }

/// The dark or the light one of the text colours.
QColor readableOn(const QColor &ground) {
  constexpr float bright = 0.6F;
  const bool isBright =
      0.3F * ground.redF() + 0.6F * ground.greenF() + 0.1F * ground.blueF() > bright;
  return PetPalette::foam().in(!isBright);
}

QImage load(const std::optional<QString> &path) {
  // Opening a pipe to read would wait for a writer for ever.
  if (!path || !QFileInfo(*path).isFile()) {
    return {};
  }
  QImageReader reader(*path);
  reader.setAutoTransform(true);
  const QSize size = reader.size();
  if (std::max(size.width(), size.height()) > largestPicture) {
    reader.setScaledSize(size.scaled(largestPicture, largestPicture, Qt::KeepAspectRatio));
  }
  return reader.read();
}

} // namespace

PersonaAvatar::PersonaAvatar(MorvoPersona persona)
    : m_persona(std::move(persona)), m_picture(load(m_persona.avatarPath)) {}

PersonaAvatar::Kind PersonaAvatar::kind() const {
  if (!m_picture.isNull()) {
    return Kind::picture;
  }
  return m_persona.tier == tierOfDrawing ? Kind::drawing : Kind::emblem;
}

QString PersonaAvatar::sign() const {
  const QString name = m_persona.name.trimmed();
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
  const auto end = finder.toNextBoundary();
  return end < 0 ? QString() : name.first(end);
}

IdleMotion PersonaAvatar::motion(const QString &mood) {
  if (mood == u"hype") {
    return {hypeSpeed, riding};
  }
  const bool drowsy = mood == u"sleepy" || mood == u"dreamy";
  return {drowsy ? drowsySpeed : usualSpeed, riding};
}

void PersonaAvatar::paint(QPainter &painter, const QRectF &target, const Look &look,
                          double time) const {
  const QTransform moved = motion(look.mood).at(time, centred(frame));
  painter.save();
  MorvoSprite::enter(painter, target);
  painter.setTransform(moved, true);
  switch (kind()) {
  case Kind::picture:
    paintPicture(painter, look);
    break;
  case Kind::emblem:
    paintEmblem(painter, look);
    break;
  case Kind::drawing:
    MorvoView::paint(painter, centred(frame), look.accent, time);
    break;
  }
  painter.restore();
}

void PersonaAvatar::paintPicture(QPainter &painter, const Look &look) const {
  glow.paint(painter, {}, look.accent);
  const QSizeF fitted = QSizeF(m_picture.size()).scaled(pictureFrame, Qt::KeepAspectRatio);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(centred(fitted), m_picture);
}

void PersonaAvatar::paintEmblem(QPainter &painter, const Look &look) const {
  glow.paint(painter, {}, look.accent);
  const QRectF circle = centred({emblemSide, emblemSide});
  QLinearGradient shade(circle.topLeft(), circle.bottomLeft());
  shade.setColorAt(0, look.accent.lighter(120));
  shade.setColorAt(1, look.accent.darker(115));
  painter.setBrush(shade);
  painter.drawEllipse(circle);
  QFont font = painter.font();
  font.setPixelSize(std::max(1, qRound(signSize * look.fontScale)));
  font.setBold(true);
  painter.setFont(font);
  painter.setPen(readableOn(look.accent));
  painter.drawText(circle, Qt::AlignCenter, sign());
}

} // namespace morvo
