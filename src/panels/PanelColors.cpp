#include "panels/PanelColors.h"

#include "pet/PetPalette.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace morvo {
namespace {

constexpr int middleLightness = 128;

QColor now(const AdaptiveColor &color) {
  const bool isDark = QGuiApplication::palette().window().color().lightness() < middleLightness;
  return isDark ? color.dark : color.light;
}

} // namespace

PanelColors::PanelColors(QObject *parent) : QObject(parent) {
  QGuiApplication::instance()->installEventFilter(this);
}

QColor PanelColors::abyss() const { return now(PetPalette::abyss()); }

QColor PanelColors::foam() const { return now(PetPalette::foam()); }

QColor PanelColors::body() const { return now(PetPalette::morvoBody()); }

bool PanelColors::eventFilter(QObject *watched, QEvent *event) {
  if (watched == QGuiApplication::instance() && event->type() == QEvent::ApplicationPaletteChange) {
    Q_EMIT changed();
  }
  return false;
}

} // namespace morvo
