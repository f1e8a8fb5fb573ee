#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace morvo {

/// What the user told a persona about how it should behave.
struct PetProfile {
  QString tone;
  QString userTitle;    ///< How it addresses the user.
  QString selfName;     ///< What it calls itself.
  QString relationship; ///< What the two are to each other.
  QString proactivity;  ///< How forward it is.
  QStringList extraNotes;

  [[nodiscard]] bool isEmpty() const { return *this == PetProfile{}; }
  bool operator==(const PetProfile &) const = default;
};

/// Every key is optional; a missing one is empty.
[[nodiscard]] PetProfile petProfileFromJson(const QJsonObject &json);
[[nodiscard]] QJsonObject toJson(const PetProfile &profile);

} // namespace morvo
