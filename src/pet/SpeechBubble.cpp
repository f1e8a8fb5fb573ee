#include "pet/SpeechBubble.h"

#include <QFontMetricsF>
#include <QTextLayout>

#include <algorithm>
#include <cmath>

namespace morvo {
namespace {

constexpr double fontSize = 12;
constexpr int paddingAcross = 11;
constexpr int paddingDown = 8;
constexpr int widthLimit = 230;
constexpr double cornerRadius = 11;
constexpr float groundOpacity = 0.92F;
constexpr float edgeOpacity = 0.4F;
constexpr double shadowOpacity = 0.25;
constexpr int shadowRadius = 3;
constexpr int shadowOffset = 1;

QFont fontFor(const BubbleLook &look) {
  QFont font;
  font.setFamilies({QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Noto Color Emoji")});
  font.setPixelSize(std::max(1, static_cast<int>(std::lround(fontSize * look.fontScale))));
  return font;
}

/// Breaks one paragraph into lines no wider than `width`.
QStringList brokenLines(const QString &paragraph, const QFont &font, double width) {
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  QTextLayout layout(paragraph, font);
  layout.setTextOption(option);
  layout.beginLayout();
  QStringList lines;
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLineWidth(width);
    lines << paragraph.mid(line.textStart(), line.textLength());
  }
  layout.endLayout();
  return lines;
}

/// At most `most` lines; the last one then carries as much of the rest as fits, and "…".
QStringList wrapped(const QString &text, const QFont &font, double width, qsizetype most) {
  // Far more than ever fits: nobody's reply of a megabyte is laid out to be thrown away.
  constexpr qsizetype longest = 2000;
  QStringList lines;
  const QStringList paragraphs = text.left(longest).trimmed().split(u'\n');
  for (const QString &paragraph : paragraphs) {
    lines << (paragraph.trimmed().isEmpty() ? QStringList{QString()}
                                            : brokenLines(paragraph, font, width));
  }
  if (lines.size() > most) {
    const QString rest = lines.at(most - 1) + u'…';
    lines = lines.first(most);
    const QFontMetricsF metrics(font);
    lines.last() = metrics.horizontalAdvance(rest) <= width
                       ? rest
                       : metrics.elidedText(lines.last() + lines.last(), Qt::ElideRight, width);
  }
  return lines;
}

double widest(const QStringList &lines, const QFontMetricsF &metrics) {
  double width = 0;
  for (const QString &line : lines) {
    width = std::max(width, metrics.horizontalAdvance(line.trimmed()));
  }
  return width;
}

/// A blurred rectangle, as rings of growing size that add up.
void paintShadow(QPainter &painter, const QRectF &rect) {
  constexpr int rings = 2 * shadowRadius;
  painter.setPen(Qt::NoPen);
  QColor shade(Qt::black);
  shade.setAlphaF(static_cast<float>(shadowOpacity / rings));
  painter.setBrush(shade);
  for (int ring = 0; ring < rings; ++ring) {
    const double grow = shadowRadius - ring;
    painter.drawRoundedRect(rect.translated(0, shadowOffset).adjusted(-grow, -grow, grow, grow),
                            cornerRadius + grow, cornerRadius + grow);
  }
}

} // namespace

SpeechBubble::SpeechBubble(const QString &text, const BubbleLook &look, QSize room) : m_look(look) {
  if (text.trimmed().isEmpty()) {
    return;
  }
  const QFont font = fontFor(look);
  const QFontMetricsF metrics(font);
  const int width = std::min(widthLimit, room.width() - 2 * shadowReach) - 2 * paddingAcross;
  const int height = room.height() - 2 * shadowReach - 2 * paddingDown;
  const auto most = std::max(qsizetype{1}, static_cast<qsizetype>(height / metrics.height()));
  m_lines = wrapped(text, font, width, most);
  const double content = std::min<double>(width, std::ceil(widest(m_lines, metrics)));
  m_size = {static_cast<int>(content) + 2 * paddingAcross,
            static_cast<int>(std::ceil(metrics.height() * static_cast<double>(m_lines.size()))) +
                2 * paddingDown};
}

QRect SpeechBubble::placeIn(const QRect &area) const {
  const int left = area.x() + (area.width() - m_size.width()) / 2;
  const int top = area.y() + area.height() - shadowReach - m_size.height();
  return {{left, top}, m_size};
}

void SpeechBubble::paint(QPainter &painter, const QRect &area, double opacity,
                         double devicePixelRatio) {
  if (isEmpty() || opacity <= 0) {
    return;
  }
  if (m_picture.isNull() || m_picture.devicePixelRatio() != devicePixelRatio) {
    m_picture = picture(devicePixelRatio);
  }
  const double before = painter.opacity();
  painter.setOpacity(before * opacity);
  painter.drawImage(placeIn(area).topLeft() - QPoint(shadowReach, shadowReach), m_picture);
  painter.setOpacity(before);
}

QImage SpeechBubble::picture(double devicePixelRatio) const {
  const QSize whole = m_size + QSize(2 * shadowReach, 2 * shadowReach);
  QImage image((QSizeF(whole) * devicePixelRatio).toSize(), QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(devicePixelRatio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF rect(QPointF(shadowReach, shadowReach), m_size);
  paintShadow(painter, rect);
  // The ground replaces the shadow beneath it, or it would darken with it.
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  QColor ground = m_look.ground;
  ground.setAlphaF(groundOpacity);
  painter.setBrush(ground);
  painter.drawRoundedRect(rect, cornerRadius, cornerRadius);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  QColor edge = m_look.edge;
  edge.setAlphaF(edgeOpacity);
  painter.setPen(QPen(edge, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), cornerRadius - 0.5,
                          cornerRadius - 0.5);
  const QFont font = fontFor(m_look);
  const QFontMetricsF metrics(font);
  painter.setFont(font);
  painter.setPen(m_look.text);
  double baseLine = rect.top() + paddingDown + metrics.ascent();
  for (const QString &line : m_lines) {
    painter.drawText(QPointF(rect.left() + paddingAcross, baseLine), line.trimmed());
    baseLine += metrics.height();
  }
  return image;
}

} // namespace morvo
