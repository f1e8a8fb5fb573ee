#include "companion/PetProfile.h"

#include <QJsonArray>

namespace morvo {

PetProfile petProfileFromJson(const QJsonObject &json) {
  PetProfile profile{.tone = json.value(u"tone").toString(),
                     .userTitle = json.value(u"userTitle").toString(),
                     .selfName = json.value(u"selfName").toString(),
                     .relationship = json.value(u"relationship").toString(),
                     .proactivity = json.value(u"proactivity").toString(),
                     .extraNotes = {}};
  for (const auto &note : json.value(u"extraNotes").toArray()) {
    if (note.isString()) {
      profile.extraNotes.append(note.toString());
    }
  }
  return profile;
}

QJsonObject toJson(const PetProfile &profile) {
  return {
      {QStringLiteral("tone"), profile.tone},
      {QStringLiteral("userTitle"), profile.userTitle},
      {QStringLiteral("selfName"), profile.selfName},
      {QStringLiteral("relationship"), profile.relationship},
      {QStringLiteral("proactivity"), profile.proactivity},
      {QStringLiteral("extraNotes"), QJsonArray::fromStringList(profile.extraNotes)},
  };
}

} // namespace morvo
