#include "panels/ScreenItem.h"

#include <QQuickWindow>

namespace morvo {

bool ScreenItem::isOnScreen() const {
  return isVisible() && window() != nullptr && window()->isVisible();
}

void ScreenItem::itemChange(ItemChange change, const ItemChangeData &value) {
  QQuickPaintedItem::itemChange(change, value);
  if (change == ItemSceneChange) {
    disconnect(m_windowShown);
    if (value.window != nullptr) {
      m_windowShown =
          connect(value.window, &QWindow::visibleChanged, this, &ScreenItem::onScreenChanged);
    }
    onScreenChanged();
  } else if (change == ItemVisibleHasChanged) {
    onScreenChanged();
  }
}

void ScreenItem::geometryChange(const QRectF &now, const QRectF &before) {
  QQuickPaintedItem::geometryChange(now, before);
  if (now.size() != before.size()) {
    update();
  }
}

} // namespace morvo
