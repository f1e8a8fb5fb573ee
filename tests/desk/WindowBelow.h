#pragma once

#include <QMouseEvent>
#include <QPainter>
#include <QRasterWindow>

namespace morvo::test {

/// Somebody's plain window under the pet: one colour, counts its clicks.
class WindowBelow final : public QRasterWindow {
public:
  explicit WindowBelow(const QColor &color) : m_color(color) {}

  [[nodiscard]] int clicks() const { return m_clicks; }

protected:
  void paintEvent(QPaintEvent * /*event*/) override {
    QPainter(this).fillRect(QRect(QPoint(), size()), m_color);
  }
  void mousePressEvent(QMouseEvent * /*event*/) override { ++m_clicks; }

private:
  QColor m_color;
  int m_clicks = 0;
};

} // namespace morvo::test
