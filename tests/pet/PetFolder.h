#pragma once

#include "pet/PetFiles.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

namespace morvo::test {

/// A home and a resource folder of their own, with pictures as a test wishes.
class PetFolder {
public:
  [[nodiscard]] PetFiles files() const {
    return {.home = {m_folder.filePath(QStringLiteral("home"))},
            .resources = m_folder.filePath(QStringLiteral("resources"))};
  }
  [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }

  /// The user's folder of a state of the pet; made when missing.
  [[nodiscard]] QString stateFolder(const QString &pet, const QString &state) const {
    return made(files().userDirectory(pet) + u'/' + state);
  }
  [[nodiscard]] QString builtInFolder(const QString &pet, const QString &state) const {
    return made(files().resourceDirectory(pet) + u'/' + state);
  }

  /// A picture with `content` filled, the rest transparent.
  [[nodiscard]] static QImage picture(QSize size, QRect content, QColor color = Qt::red) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    for (int y = content.top(); y <= content.bottom(); ++y) {
      for (int x = content.left(); x <= content.right(); ++x) {
        image.setPixelColor(x, y, color);
      }
    }
    return image;
  }

  /// Frames 1.png, 2.png, … that are full of one colour.
  static void fill(const QString &folder, int count, QSize size = {8, 8}, QColor color = Qt::red) {
    for (int index = 1; index <= count; ++index) {
      save(picture(size, QRect(QPoint(), size), color),
           folder + u'/' + QString::number(index) + QStringLiteral(".png"));
    }
  }
  static void save(const QImage &image, const QString &path) {
    if (!image.save(path, "PNG")) {
      qFatal("cannot write a test picture");
    }
  }
  static void write(const QString &path, const QByteArray &bytes) {
    made(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
      qFatal("cannot write a test file");
    }
  }
  void writePack(const QString &pet, const QByteArray &json) const {
    write(files().userDirectory(pet) + QStringLiteral("/manifest.json"), json);
  }

private:
  static QString made(const QString &folder) {
    if (!QDir().mkpath(folder)) {
      qFatal("cannot make a test folder");
    }
    return folder;
  }

  QTemporaryDir m_folder;
};

} // namespace morvo::test
