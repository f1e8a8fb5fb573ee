#pragma once

#include "pet/PetPack.h"

#include <QJsonObject>
#include <QStringList>

#include <optional>

namespace morvo {

/// Short lines in one persona's voice, for the scenes in which it speaks without a model.
struct LinePack {
  QStringList done;       ///< A task has finished.
  QStringList needsInput; ///< The user must decide.
  QStringList petted;     ///< The pet is tapped or stroked.
  QStringList digest;     ///< Opening of the daily report.
  QStringList usage;      ///< Opening word when usage runs high.
  QStringList reflect;    ///< A caring question to the user.
  QStringList rest;       ///< A gentle push to take a break.

  [[nodiscard]] const QStringList &lines(LineBucket bucket) const;
  /// At least one of `done`, `needsInput`, `petted` has a line.
  [[nodiscard]] bool isUsable() const;

  bool operator==(const LinePack &) const = default;
};

/// Nothing unless all seven keys are there, each a list of texts.
[[nodiscard]] std::optional<LinePack> linePackFromJson(const QJsonObject &json);
[[nodiscard]] QJsonObject toJson(const LinePack &pack);

} // namespace morvo
