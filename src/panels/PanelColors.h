#pragma once

#include <QColor>
#include <QObject>
#include <QQmlEngine>

namespace morvo {

/// The product's colours for the appearance that the application has now.
class PanelColors : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor abyss READ abyss NOTIFY changed)
  Q_PROPERTY(QColor foam READ foam NOTIFY changed)
  Q_PROPERTY(QColor body READ body NOTIFY changed)

public:
  explicit PanelColors(QObject *parent = nullptr);

  /// Ground of the panel.
  [[nodiscard]] QColor abyss() const;
  /// Text.
  [[nodiscard]] QColor foam() const;
  /// The default pet's blue, for what is well.
  [[nodiscard]] QColor body() const;

Q_SIGNALS:
  void changed();

private:
  bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace morvo
