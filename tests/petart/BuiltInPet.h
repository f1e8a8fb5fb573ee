#pragma once

#include <QDir>
#include <QImage>
#include <QString>
#include <QStringList>

#include <cstdlib>
#include <string>
#include <vector>

namespace morvo::test {

/// A built-in pet's folder as the build has left it.
class BuiltInPet {
public:
  explicit BuiltInPet(const std::string &id) : m_id(QString::fromStdString(id)) {}

  [[nodiscard]] static std::vector<std::string> all() {
    std::vector<std::string> ids;
    for (const QString &id : QStringLiteral(MORVO_BUILT_IN_PETS).split(u',', Qt::SkipEmptyParts)) {
      ids.push_back(id.toStdString());
    }
    return ids;
  }
  [[nodiscard]] static QString resources() { return QStringLiteral(MORVO_PET_RESOURCES); }

  [[nodiscard]] const QString &id() const { return m_id; }
  [[nodiscard]] QString folder() const { return resources() + QStringLiteral("/pets/") + m_id; }
  [[nodiscard]] QString folder(const QString &set) const { return folder() + u'/' + set; }
  [[nodiscard]] int frames(const QString &set) const {
    return static_cast<int>(
        QDir(folder(set)).entryList({QStringLiteral("*.png")}, QDir::Files).size());
  }
  [[nodiscard]] QImage frame(const QString &set, int index) const {
    return QImage(QStringLiteral("%1/%2.png").arg(folder(set)).arg(index))
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
  }

private:
  QString m_id;
};

} // namespace morvo::test
