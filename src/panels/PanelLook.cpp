#include "panels/PanelLook.h"

#include "panels/Contrast.h"
#include "panels/Followed.h"
#include "pet/MorvoTheme.h"
#include "pet/PetPalette.h"

#include <QEvent>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>

namespace morvo {
namespace {

constexpr int middleLightness = 128;
/// The strongest ground of a card, of `foam` on the panel.
constexpr double cardOpacity = 0.06;

/// Its Chinese letters are just two of the others wide.
const QString chineseFixedFamily = QStringLiteral("Noto Sans Mono CJK SC");

const AdaptiveColor orangeColor{QColor(0xc9, 0x5f, 0x06), QColor(0xff, 0xa0, 0x40)};
const AdaptiveColor redColor{QColor(0xd1, 0x2f, 0x2f), QColor(0xff, 0x5d, 0x5d)};
const AdaptiveColor yellowColor{QColor(0x9a, 0x75, 0x00), QColor(0xff, 0xd6, 0x5a)};

} // namespace

PanelLook::PanelLook(QObject *parent) : QObject(parent) {
  QGuiApplication::instance()->installEventFilter(this);
}

void PanelLook::setStore(PetStore *store) {
  if (!Followed::replace(m_store, store, this)) {
    return;
  }
  if (m_store != nullptr) {
    connect(m_store, &PetStore::appearanceChanged, this, &PanelLook::refresh);
  }
  Q_EMIT storeChanged();
  refresh();
}

void PanelLook::refresh() {
  m_isDark = QGuiApplication::palette().window().color().lightness() < middleLightness;
  if (m_store != nullptr) {
    const Setting &setting = m_store->setting();
    m_theme = MorvoTheme::current(setting).color.in(m_isDark);
    m_fontScale = setting.fontScale();
  }
  Q_EMIT changed();
}

QColor PanelLook::full(PanelTint::Tone tone) const {
  switch (tone) {
  case PanelTint::Tone::theme:
    return m_theme;
  case PanelTint::Tone::body:
    return PetPalette::morvoBody().in(m_isDark);
  case PanelTint::Tone::krill:
    return PetPalette::krill().in(m_isDark);
  case PanelTint::Tone::coral:
    return PetPalette::coral().in(m_isDark);
  case PanelTint::Tone::orange:
    return orangeColor.in(m_isDark);
  case PanelTint::Tone::red:
    return redColor.in(m_isDark);
  case PanelTint::Tone::yellow:
    return yellowColor.in(m_isDark);
  case PanelTint::Tone::foam:
    break;
  }
  return PetPalette::foam().in(m_isDark);
}

QString PanelLook::fixedFamily() {
  return QFontDatabase::families().contains(chineseFixedFamily)
             ? chineseFixedFamily
             : QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
}

QColor PanelLook::abyss() const { return PetPalette::abyss().in(m_isDark); }

QColor PanelLook::card() const { return Contrast::over(tinted(foam(), cardOpacity), abyss()); }

QColor PanelLook::onTheme() const { return Contrast::textOn(theme()); }

QColor PanelLook::fill(const PanelTint &tint) const {
  return tinted(full(tint.tone), tint.opacity);
}

QColor PanelLook::ink(const PanelTint &tint) const { return inkOn(tint, card()); }

QColor PanelLook::inkOn(const PanelTint &tint, const QColor &ground) const {
  return Contrast::readable(fill(tint), Contrast::over(ground, abyss()), foam());
}

QColor PanelLook::tinted(const QColor &color, double opacity) {
  QColor result = color;
  result.setAlphaF(static_cast<float>(opacity));
  return result;
}

QColor PanelLook::text(const QColor &color, double opacity) const {
  return textOn(color, opacity, card());
}

QColor PanelLook::textOn(const QColor &color, double opacity, const QColor &ground) const {
  return Contrast::readable(tinted(color, opacity), Contrast::over(ground, abyss()), foam());
}

bool PanelLook::eventFilter(QObject *watched, QEvent *event) {
  if (watched == QGuiApplication::instance() && event->type() == QEvent::ApplicationPaletteChange) {
    refresh();
  }
  return false;
}

} // namespace morvo
