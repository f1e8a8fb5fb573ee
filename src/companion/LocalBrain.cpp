#include "companion/LocalBrain.h"

#include <array>

namespace morvo::LocalBrain {
namespace {

/// How one status of an agent is answered where the pack does not say otherwise.
struct Answer {
  QStringView status;
  PetEventKind event{};
  QStringView action;
  bool notify = false;
  std::optional<LineBucket> bucket;
};

constexpr std::array answers{
    Answer{u"done", PetEventKind::agentDone, u"celebrate", true, LineBucket::done},
    Answer{u"needs_input", PetEventKind::agentNeedsInput, u"alert", true, LineBucket::needsInput},
    Answer{u"running", PetEventKind::agentRunning, u"greet", false, std::nullopt},
};

const Answer *answerTo(const QJsonObject &signal) {
  if (signal.value(u"kind").toString() != u"agent") {
    return nullptr;
  }
  const QString status = signal.value(u"status").toString();
  for (const Answer &answer : answers) {
    if (answer.status == status) {
      return &answer;
    }
  }
  return nullptr;
}

// Needs at or below this weigh on the mood.
constexpr double low = 20;
constexpr double hypeBond = 60;
constexpr double happyBond = 30;

} // namespace

Reaction react(const QList<QJsonObject> &signals, const LinePack *pack, const PetPack *petPack,
               RandomSource &random) {
  const Answer *answer = nullptr;
  for (const QJsonObject &signal : signals) {
    answer = answerTo(signal);
    if (answer != nullptr) {
      break;
    }
  }
  if (answer == nullptr) {
    return {};
  }
  Reaction reaction{.action = answer->action.toString(),
                    .line = {},
                    .notify = answer->notify,
                    .event = answer->event};
  auto bucket = answer->bucket;
  if (petPack != nullptr) {
    if (const auto action = petPack->actionID(answer->event)) {
      reaction.action = petPack->frameSet(*action);
    }
    reaction.notify = petPack->notify(answer->event, answer->notify);
    if (bucket) {
      bucket = petPack->lineBucketFor(answer->event).value_or(*bucket);
    }
  }
  if (bucket && pack != nullptr) {
    reaction.line = randomLine(pack->lines(*bucket), random);
  }
  return reaction;
}

QString pettedLine(const LinePack *pack, RandomSource &random) {
  return pack != nullptr ? randomLine(pack->petted, random) : QString();
}

QString randomLine(const QStringList &lines, RandomSource &random) {
  return lines.isEmpty() ? QString()
                         : lines.at(static_cast<qsizetype>(
                               random.below(static_cast<std::size_t>(lines.size()))));
}

QString deriveMood(const Needs &needs) {
  if (needs.energy <= low) {
    return QStringLiteral("sleepy");
  }
  if (needs.belly <= low) {
    return QStringLiteral("hungry");
  }
  if (needs.affinity <= low) {
    return QStringLiteral("lonely");
  }
  if (needs.bond >= hypeBond) {
    return QStringLiteral("hype");
  }
  return needs.bond >= happyBond ? QStringLiteral("happy") : QStringLiteral("calm");
}

} // namespace morvo::LocalBrain
