#include "pet/MorvoView.h"

#include "pet/SoftDisc.h"

#include <QPainter>

#include <cmath>
#include <numbers>

namespace morvo::MorvoView {
namespace {

constexpr SoftDisc glow{.diameter = 130, .blur = 18, .opacity = 0.3};

// Heights in points, angles in degrees, speeds in radians a second. The speeds have no common
// measure, so the creature never seems to repeat itself.
constexpr double bobHeight = 3;
constexpr double bobSpeed = 1.5;
constexpr double breathDepth = 0.02;
constexpr double breathSpeed = 1.9;
constexpr double wagDegrees = 9;
constexpr double wagSpeed = 3.1;
constexpr double blinkPeriod = 4.3;
constexpr double blinkSeconds = 0.22;

constexpr int jets = 5;
constexpr double jetWidth = 3;
constexpr double jetSpacing = 6;
/// Where the jets stand, from the middle of the body.
constexpr double blowhole = -34;

void paintSpout(QPainter &painter, const QColor &tint, double time) {
  for (int jet = 0; jet < jets; ++jet) {
    const double pressure = (std::sin(3 * time + 0.8 * jet) + 1) * 0.5;
    const double height = 8 + 10 * pressure;
    const double x = (jet - (jets - 1) / 2.0) * jetSpacing;
    const double foot = blowhole - 7 * pressure;
    QColor water = tint.lighter(120);
    water.setAlphaF(static_cast<float>(0.45 + 0.55 * pressure));
    painter.setBrush(water);
    painter.drawRoundedRect(QRectF(x - jetWidth / 2, foot - height, jetWidth, height), jetWidth / 2,
                            jetWidth / 2);
  }
}

void paintCreature(QPainter &painter, const QColor &tint, double time) {
  const MorvoSprite::Pose pose = poseAt(time);
  painter.save();
  painter.translate(0, pose.bob);
  paintSpout(painter, tint, time);
  painter.restore();
  MorvoSprite::paintBody(painter, tint, pose);
}

} // namespace

MorvoSprite::Pose poseAt(double time) {
  MorvoSprite::Pose pose;
  pose.bob = bobHeight * std::sin(bobSpeed * time);
  pose.breath = 1 + breathDepth * std::sin(breathSpeed * time);
  pose.wag = wagDegrees * std::sin(wagSpeed * time);
  const double cycle = time - blinkPeriod * std::floor(time / blinkPeriod);
  const double shutting = (cycle - (blinkPeriod - blinkSeconds)) / blinkSeconds;
  pose.eyesOpen = shutting > 0 ? 1 - std::sin(std::numbers::pi * shutting) : 1;
  return pose;
}

void paint(QPainter &painter, const QRectF &target, const QColor &tint, double time) {
  painter.save();
  MorvoSprite::enter(painter, target);
  glow.paint(painter, {}, tint);
  paintCreature(painter, tint, time);
  painter.restore();
}

QImage picture(const QColor &tint, double scale) {
  QImage image((MorvoSprite::frame * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  MorvoSprite::enter(painter, image.rect());
  glow.paint(painter, {}, tint, MorvoSprite::frame.height() / 2);
  paintCreature(painter, tint, 0);
  return image;
}

} // namespace morvo::MorvoView
