#include "platform/qt/AppearancePalettes.h"

#include <QApplication>

namespace morvo::AppearancePalettes {
namespace {

/// The tones a palette is made of; the rest follows from them.
struct Tones {
  QColor window;
  QColor base;
  QColor button;
  QColor text;
  QColor faded;
  QColor accent;
  QColor onAccent;
};

QPalette made(const Tones &tones) {
  QPalette palette(tones.button, tones.window);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                          QPalette::ToolTipText, QPalette::BrightText}) {
    palette.setColor(role, tones.text);
    palette.setColor(QPalette::Disabled, role, tones.faded);
  }
  palette.setColor(QPalette::Base, tones.base);
  palette.setColor(QPalette::AlternateBase, tones.window);
  palette.setColor(QPalette::ToolTipBase, tones.button);
  palette.setColor(QPalette::PlaceholderText, tones.faded);
  palette.setColor(QPalette::Highlight, tones.accent);
  palette.setColor(QPalette::HighlightedText, tones.onAccent);
  palette.setColor(QPalette::Link, tones.accent);
  palette.setColor(QPalette::LinkVisited, tones.accent);
  return palette;
}

} // namespace

QPalette light() {
  return made({.window = QColor(0xf3f6f9),
               .base = QColor(0xffffff),
               .button = QColor(0xe6ecf1),
               .text = QColor(0x14222e),
               .faded = QColor(0x7d8b96),
               .accent = QColor(0x0b7f8c),
               .onAccent = QColor(0xffffff)});
}

QPalette dark() {
  return made({.window = QColor(0x0e1a24),
               .base = QColor(0x0a131b),
               .button = QColor(0x1b2b38),
               .text = QColor(0xe8f1f5),
               .faded = QColor(0x6f8391),
               .accent = QColor(0x3cc8d4),
               .onAccent = QColor(0x06222a)});
}

void apply(Appearance appearance) {
  // Desktop styles draw parts in colours of their own; this one keeps to the palette.
  static const bool styled = QApplication::setStyle(QStringLiteral("Fusion")) != nullptr;
  static_cast<void>(styled);
  switch (appearance) {
  case Appearance::light:
    QApplication::setPalette(light());
    break;
  case Appearance::dark:
    QApplication::setPalette(dark());
    break;
  case Appearance::followSystem:
    QApplication::setPalette(QPalette());
    break;
  }
}

} // namespace morvo::AppearancePalettes
