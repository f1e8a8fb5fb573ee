#include "pet/ContentFile.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace morvo::ContentFile {
namespace {

const QString fileName = QStringLiteral("/content.json");
const QString xKey = QStringLiteral("x");
const QString yKey = QStringLiteral("y");
const QString widthKey = QStringLiteral("width");
const QString heightKey = QStringLiteral("height");

} // namespace

std::optional<QRectF> read(const QString &petFolder) {
  QFile file(petFolder + fileName);
  if (!file.open(QIODevice::ReadOnly)) {
    return std::nullopt;
  }
  const QJsonObject object = QJsonDocument::fromJson(file.readAll()).object();
  const QRectF square(object.value(xKey).toDouble(), object.value(yKey).toDouble(),
                      object.value(widthKey).toDouble(), object.value(heightKey).toDouble());
  // A square that touches the far border may miss it by what the sum of two fractions loses.
  constexpr double lost = 1e-9;
  const bool inside = square.x() >= 0 && square.y() >= 0 && !square.isEmpty() &&
                      square.x() + square.width() <= 1 + lost &&
                      square.y() + square.height() <= 1 + lost;
  return inside ? std::optional(square) : std::nullopt;
}

bool write(const QString &petFolder, const QRectF &square) {
  const QJsonObject object{{xKey, square.x()},
                           {yKey, square.y()},
                           {widthKey, square.width()},
                           {heightKey, square.height()}};
  const QByteArray text = QJsonDocument(object).toJson();
  QSaveFile file(petFolder + fileName);
  return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

} // namespace morvo::ContentFile
