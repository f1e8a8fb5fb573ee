#pragma once

#include <QColor>
#include <QQuickPaintedItem>

namespace morvo {

/// A symbol of the panel, by its name. A picture: what it means is said by what holds it.
class SymbolItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged REQUIRED)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged REQUIRED)

public:
  explicit SymbolItem(QQuickItem *parent = nullptr);

  [[nodiscard]] const QString &name() const { return m_name; }
  void setName(const QString &name);
  [[nodiscard]] const QColor &color() const { return m_color; }
  void setColor(const QColor &color);

  void paint(QPainter *painter) override;

Q_SIGNALS:
  void nameChanged();
  void colorChanged();

private:
  QString m_name;
  QColor m_color;
};

} // namespace morvo
