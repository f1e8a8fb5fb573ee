#pragma once

#include "app/PetStore.h"
#include "panels/PanelTint.h"

#include <QColor>
#include <QObject>
#include <QPointer>
#include <QQmlEngine>

namespace morvo {

/// The colours and sizes of the panel as the appearance, the theme and the text size have them now.
/// All follow a change at once. Told opacities of text are lower bounds: a text that could not be
/// read on its ground comes out stronger.
class PanelLook : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(morvo::PetStore *store READ store WRITE setStore NOTIFY storeChanged REQUIRED)
  Q_PROPERTY(bool dark READ isDark NOTIFY changed)
  Q_PROPERTY(QColor abyss READ abyss NOTIFY changed)
  Q_PROPERTY(QColor card READ card NOTIFY changed)
  Q_PROPERTY(QColor foam READ foam NOTIFY changed)
  Q_PROPERTY(QColor theme READ theme NOTIFY changed)
  Q_PROPERTY(QColor onTheme READ onTheme NOTIFY changed)
  Q_PROPERTY(QColor coral READ coral NOTIFY changed)
  Q_PROPERTY(QColor orange READ orange NOTIFY changed)
  Q_PROPERTY(QString fixedFamily READ fixedFamily CONSTANT)
  Q_PROPERTY(double fontScale READ fontScale NOTIFY changed)

public:
  explicit PanelLook(QObject *parent = nullptr);

  [[nodiscard]] PetStore *store() const { return m_store; }
  void setStore(PetStore *store);

  [[nodiscard]] bool isDark() const { return m_isDark; }
  /// Ground of the panel.
  [[nodiscard]] QColor abyss() const;
  /// Ground of a card in it; text that is read there is read on the panel too.
  [[nodiscard]] QColor card() const;
  /// Text.
  [[nodiscard]] QColor foam() const { return full(PanelTint::Tone::foam); }
  [[nodiscard]] QColor theme() const { return full(PanelTint::Tone::theme); }
  /// Text on the theme's colour.
  [[nodiscard]] QColor onTheme() const;
  [[nodiscard]] QColor coral() const { return full(PanelTint::Tone::coral); }
  [[nodiscard]] QColor orange() const { return full(PanelTint::Tone::orange); }
  /// The font in which a command is shown: all letters of one width.
  [[nodiscard]] static QString fixedFamily();
  [[nodiscard]] double fontScale() const { return m_fontScale; }

  /// For areas and lines.
  [[nodiscard]] QColor fill(const PanelTint &tint) const;
  /// For text on a card.
  [[nodiscard]] QColor ink(const PanelTint &tint) const;
  [[nodiscard]] QColor inkOn(const PanelTint &tint, const QColor &ground) const;

  // The same for QML, by colour. A binding that hands in a colour of this object follows it.
  Q_INVOKABLE [[nodiscard]] static QColor tinted(const QColor &color, double opacity);
  Q_INVOKABLE [[nodiscard]] QColor text(const QColor &color, double opacity) const;
  Q_INVOKABLE [[nodiscard]] QColor textOn(const QColor &color, double opacity,
                                          const QColor &ground) const;

  /// Reads the settings anew; the panel asks when it comes up, for other programs may write them.
  Q_INVOKABLE void refresh();

Q_SIGNALS:
  void storeChanged();
  void changed();

private:
  bool eventFilter(QObject *watched, QEvent *event) override;
  [[nodiscard]] QColor full(PanelTint::Tone tone) const;

  QPointer<PetStore> m_store;
  bool m_isDark = true;
  QColor m_theme;
  double m_fontScale = 1;
};

} // namespace morvo
