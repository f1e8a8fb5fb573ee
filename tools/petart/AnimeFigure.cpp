#include "AnimeFigure.h"

#include "AnimeBody.h"
#include "AnimeFace.h"
#include "AnimeHair.h"
#include "AnimeProps.h"
#include "PetArt.h"

#include <QPainter>

namespace morvo::AnimeFigure {
namespace {

/// Drawn at twice the size and reduced, so that edges of clipped colours are as smooth as lines.
constexpr int oversampling = 2;
/// Leaves room above for hops.
constexpr double figureScale = 0.97;

/// The ponytail weighs on one side: she stands this far on the other.
constexpr double balance = -22;

/// From the space of the whole figure to the canvas.
QTransform figure(const AnimePose &pose) {
  QTransform transform;
  transform.translate(canvasSide / 2.0 + balance + pose.shift.x(), baseLine + pose.shift.y());
  transform.translate(0, -pose.pivot);
  transform.rotate(pose.tilt);
  transform.translate(0, pose.pivot);
  transform.scale(figureScale * pose.width, figureScale * pose.height);
  return transform;
}

/// From the space of the head to that of the torso.
QTransform head(const AnimePose &pose) {
  QTransform transform;
  const QPointF neck = AnimeBody::neck + pose.headShift;
  transform.translate(neck.x(), neck.y());
  transform.rotate(pose.headTilt);
  return transform;
}

class Layers {
public:
  Layers(QPainter &painter, const AnimePose &pose)
      : m_painter(painter), m_figure(figure(pose)), m_torso(AnimeBody::torso(pose) * m_figure),
        m_head(head(pose) * m_torso) {}

  void enterFigure() { enter(m_figure); }
  void enterTorso() { enter(m_torso); }
  void enterHead() { enter(m_head); }
  void enterCanvas() { enter({}); }

private:
  void enter(const QTransform &space) {
    m_painter.setTransform(space * QTransform::fromScale(oversampling, oversampling));
  }

  QPainter &m_painter;
  QTransform m_figure;
  QTransform m_torso;
  QTransform m_head;
};

void paintBody(QPainter &painter, Layers &layers, const AnimePose &pose) {
  layers.enterTorso();
  AnimeBody::paintArms(painter, pose, AnimePose::Layer::behind);
  if (!pose.sitting) {
    layers.enterFigure();
    AnimeBody::paintLegs(painter, pose);
  }
  layers.enterTorso();
  AnimeBody::paintHood(painter, pose);
  AnimeBody::paintTorso(painter, pose);
  layers.enterFigure();
  if (pose.sitting) {
    AnimeBody::paintLap(painter, pose);
  }
  if (pose.prop == AnimePose::Prop::cushion) {
    AnimeProps::paintCushion(painter);
  }
  layers.enterTorso();
  if (pose.heart > 0) {
    AnimeProps::paintHeart(painter, pose.heart);
  }
  AnimeBody::paintArms(painter, pose, AnimePose::Layer::body);
  layers.enterFigure();
  if (pose.prop == AnimePose::Prop::laptop) {
    AnimeProps::paintLaptop(painter, pose);
  }
  if (pose.sitting) {
    AnimeBody::paintSoles(painter, pose);
  }
}

void paintHead(QPainter &painter, const AnimePose &pose) {
  AnimeFace::paint(painter, pose);
  AnimeHair::paintBefore(painter, pose);
  if (pose.alarm > 0) {
    AnimeProps::paintAlarm(painter, pose.alarm);
  }
}

void paintFloaters(QPainter &painter, const AnimePose &pose, bool behind) {
  for (const AnimePose::Floater &floater : pose.floaters) {
    if (floater.behind == behind) {
      AnimeProps::paintFloater(painter, floater);
    }
  }
}

} // namespace

QImage picture(const AnimePose &pose) {
  const int side = canvasSide * oversampling;
  QImage canvas(side, side, QImage::Format_ARGB32_Premultiplied);
  canvas.fill(Qt::transparent);
  QPainter painter(&canvas);
  painter.setRenderHint(QPainter::Antialiasing);
  Layers layers(painter, pose);
  layers.enterCanvas();
  paintFloaters(painter, pose, true);
  layers.enterHead();
  AnimeHair::paintBehind(painter, pose);
  paintBody(painter, layers, pose);
  layers.enterHead();
  paintHead(painter, pose);
  layers.enterTorso();
  AnimeBody::paintArms(painter, pose, AnimePose::Layer::head);
  layers.enterCanvas();
  paintFloaters(painter, pose, false);
  painter.end();
  return canvas.scaled(canvasSide, canvasSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QPointF crown(const AnimePose &pose) {
  return (head(pose) * AnimeBody::torso(pose) * figure(pose)).map(QPointF(0, -160));
}

double headLean(const AnimePose &pose) { return pose.tilt + pose.lean + pose.headTilt; }

} // namespace morvo::AnimeFigure
