#pragma once

#include "base/RandomSource.h"
#include "companion/LinePack.h"
#include "pet/Needs.h"
#include "pet/PetPack.h"

#include <QJsonObject>
#include <QList>

#include <optional>

/// The pet's instant reactions, with no model at all. Never answers a chat message.
namespace morvo::LocalBrain {

/// What the pet does about a batch of signals.
struct Reaction {
  QString action; ///< The frame set to play; empty for none.
  QString line;   ///< What it says; empty for none.
  bool notify = false;
  std::optional<PetEventKind> event;

  bool operator==(const Reaction &) const = default;
};

/// Answers the first signal of kind "agent" whose status is "done", "needs_input" or "running"; no
/// such signal, no reaction. `pack` holds the lines, `petPack` the actions; either may be missing.
[[nodiscard]] Reaction react(const QList<QJsonObject> &signals, const LinePack *pack,
                             const PetPack *petPack, RandomSource &random);

/// A random line for being petted; empty without one.
[[nodiscard]] QString pettedLine(const LinePack *pack, RandomSource &random);

/// A random line of the list; empty for an empty list.
[[nodiscard]] QString randomLine(const QStringList &lines, RandomSource &random);

/// "sleepy", "hungry", "lonely", "hype", "happy" or "calm", in this order of precedence.
[[nodiscard]] QString deriveMood(const Needs &needs);

} // namespace morvo::LocalBrain
