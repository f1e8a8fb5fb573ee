#include "app/MenubarMode.h"

#include "base/Diagnostics.h"
#include "pet/MenubarFrames.h"

#include <QColor>
#include <QImage>
#include <QPainter>

#include <algorithm>

namespace morvo::MenubarMode {
namespace {

constexpr int iconSide = 18;
constexpr int stripHeight = 20;
/// Around each icon.
constexpr int margin = (stripHeight - iconSide) / 2;
constexpr QRgb stripColor = qRgb(64, 64, 64);

/// The icons in a row on a strip; of one empty place when there is none.
QImage strip(const std::vector<QImage> &icons) {
  const auto count = static_cast<int>(icons.size());
  QImage image(std::max(count, 1) * stripHeight, stripHeight, QImage::Format_RGB32);
  image.fill(stripColor);
  QPainter painter(&image);
  for (int index = 0; index < count; ++index) {
    painter.drawImage(index * stripHeight + margin, margin, icons[static_cast<std::size_t>(index)]);
  }
  return image;
}

} // namespace

void run(const QStringList &fields, const PetFiles &files) {
  const QString &output = fields.at(1);
  const auto icons = MenubarFrames(files).idle(fields.at(0), iconSide, 1);
  // Whoever asked for the picture looks at the file; there is nobody else to tell.
  static_cast<void>(strip(icons).save(output, "PNG"));
  Diagnostics::line(u"MENUBAR",
                    QStringLiteral("%1 frames %2").arg(output, QString::number(icons.size())));
}

} // namespace morvo::MenubarMode
