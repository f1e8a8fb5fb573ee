#pragma once

#include <QQmlEngine>
#include <QQuickPaintedItem>

namespace morvo {

/// A painted item that knows whether it is on the screen, so that nothing of it runs elsewhere.
class ScreenItem : public QQuickPaintedItem {
  Q_OBJECT
  QML_ANONYMOUS

public:
  using QQuickPaintedItem::QQuickPaintedItem;

  /// Whether it is seen in a window that is shown.
  [[nodiscard]] bool isOnScreen() const;

protected:
  /// The item may have come on the screen or left it.
  virtual void onScreenChanged() = 0;

  void itemChange(ItemChange change, const ItemChangeData &value) override;
  void geometryChange(const QRectF &now, const QRectF &before) override;

private:
  QMetaObject::Connection m_windowShown;
};

} // namespace morvo
