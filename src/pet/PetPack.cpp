#include "pet/PetPack.h"

#include "base/Json.h"
#include "pet/FrameSetName.h"

#include <QJsonArray>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

// How tolerant each field is:
// - A top-level field that is missing or of another type takes its default.
// - `generation` and `motion` are there whole or not at all.
// - `actions` and `autonomousActions` are lists whole or empty: one bad element empties them.
// - `reactions` and `loops` lose only their bad elements.

namespace morvo {
namespace {

template <typename Kind> using Names = std::pair<Kind, QLatin1StringView>;

constexpr std::array eventNames{
    Names<PetEventKind>{PetEventKind::agentDone, QLatin1StringView("agent_done")},
    Names<PetEventKind>{PetEventKind::agentNeedsInput, QLatin1StringView("agent_needs_input")},
    Names<PetEventKind>{PetEventKind::agentRunning, QLatin1StringView("agent_running")},
    Names<PetEventKind>{PetEventKind::userPet, QLatin1StringView("user_pet")},
    Names<PetEventKind>{PetEventKind::userReturned, QLatin1StringView("user_returned")},
    Names<PetEventKind>{PetEventKind::approvalRequest, QLatin1StringView("approval_request")},
    Names<PetEventKind>{PetEventKind::quotaHigh, QLatin1StringView("quota_high")},
    Names<PetEventKind>{PetEventKind::quotaCritical, QLatin1StringView("quota_critical")},
    Names<PetEventKind>{PetEventKind::restNudge, QLatin1StringView("rest_nudge")},
    Names<PetEventKind>{PetEventKind::idle, QLatin1StringView("idle")},
};

constexpr std::array bucketNames{
    Names<LineBucket>{LineBucket::done, QLatin1StringView("done")},
    Names<LineBucket>{LineBucket::needsInput, QLatin1StringView("needsInput")},
    Names<LineBucket>{LineBucket::petted, QLatin1StringView("petted")},
    Names<LineBucket>{LineBucket::digest, QLatin1StringView("digest")},
    Names<LineBucket>{LineBucket::usage, QLatin1StringView("usage")},
    Names<LineBucket>{LineBucket::reflect, QLatin1StringView("reflect")},
    Names<LineBucket>{LineBucket::rest, QLatin1StringView("rest")},
};

template <typename Table, typename Kind> QString nameOf(const Table &names, Kind kind) {
  return std::ranges::find(names, kind, &Table::value_type::first)->second;
}

template <typename Kind, typename Table>
std::optional<Kind> kindNamed(const Table &names, const QString &name) {
  const auto *found = std::ranges::find(names, name, &Table::value_type::second);
  return found == names.end() ? std::nullopt : std::optional(found->first);
}

// One value of each type, or nothing when the value is of another type.

std::optional<QString> text(const QJsonValue &value) {
  return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<bool> boolean(const QJsonValue &value) {
  return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<double> real(const QJsonValue &value) {
  return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<qint64> integer(const QJsonValue &value) {
  // What is no whole number within 64 bits gives the fallback, whichever that is.
  const qint64 number = value.toInteger(0);
  return number == value.toInteger(1) ? std::optional(number) : std::nullopt;
}

std::optional<QStringList> texts(const QJsonValue &value) {
  if (!value.isArray()) {
    return std::nullopt;
  }
  QStringList list;
  for (const QJsonValue element : value.toArray()) {
    const auto string = text(element);
    if (!string) {
      return std::nullopt;
    }
    list.append(*string);
  }
  return list;
}

/// Reads an optional field into `field`. False when there is a value of the wrong type.
template <typename T, typename Read>
bool readOptional(std::optional<T> &field, const QJsonValue &value, const Read &read) {
  field = read(value);
  return field.has_value() || value.isUndefined() || value.isNull();
}

std::optional<PetPack::Action> actionFrom(const QJsonValue &value) {
  const auto id = text(value[u"id"]);
  if (!id) {
    return std::nullopt;
  }
  return PetPack::Action{.id = *id,
                         .label = text(value[u"label"]).value_or(*id),
                         .frameSet = text(value[u"frameSet"]).value_or(*id),
                         .loop = boolean(value[u"loop"]).value_or(false),
                         .tags = texts(value[u"tags"]).value_or(QStringList()),
                         .prompt = text(value[u"prompt"])};
}

std::optional<PetPack::ReactionRule> reactionFrom(const QJsonValue &value) {
  const auto event = petEventKind(value[u"event"].toString());
  const auto action = text(value[u"action"]);
  if (!event || !action) {
    return std::nullopt;
  }
  return PetPack::ReactionRule{.event = *event,
                               .action = *action,
                               .lineBucket = lineBucket(value[u"lineBucket"].toString()),
                               .notify = boolean(value[u"notify"]).value_or(false),
                               .priority = integer(value[u"priority"])};
}

std::optional<PetPack::LoopRule> loopFrom(const QJsonValue &value) {
  const auto mood = text(value[u"mood"]);
  const auto action = text(value[u"action"]);
  return mood && action ? std::optional(PetPack::LoopRule{.mood = *mood, .action = *action})
                        : std::nullopt;
}

std::optional<PetPack::Generation> generationFrom(const QJsonValue &value) {
  const auto source = text(value[u"source"]);
  const auto style = text(value[u"style"]);
  const auto brief = text(value[u"brief"]);
  const auto questions = texts(value[u"questions"]);
  if (!source || !style || !brief || !questions) {
    return std::nullopt;
  }
  return PetPack::Generation{
      .source = *source, .style = *style, .brief = *brief, .questions = *questions};
}

std::optional<PetPack::MotionProfile> motionFrom(const QJsonValue &value) {
  if (!value.isObject()) {
    return std::nullopt;
  }
  PetPack::MotionProfile motion;
  const bool sound = readOptional(motion.style, value[u"style"], text) &&
                     readOptional(motion.breathAmplitude, value[u"breathAmplitude"], real) &&
                     readOptional(motion.breathPeriod, value[u"breathPeriod"], real) &&
                     readOptional(motion.bobAmplitude, value[u"bobAmplitude"], real) &&
                     readOptional(motion.swayDegrees, value[u"swayDegrees"], real) &&
                     readOptional(motion.tempo, value[u"tempo"], real);
  return sound ? std::optional(motion) : std::nullopt;
}

/// The elements that can be read, in order.
template <typename T>
std::vector<T> lossyList(const QJsonValue &value, std::optional<T> (*read)(const QJsonValue &)) {
  std::vector<T> list;
  for (const QJsonValue element : value.toArray()) {
    if (auto item = read(element)) {
      list.push_back(std::move(*item));
    }
  }
  return list;
}

/// All elements, or none when one cannot be read.
template <typename T>
std::vector<T> strictList(const QJsonValue &value, std::optional<T> (*read)(const QJsonValue &)) {
  auto list = lossyList(value, read);
  return std::ssize(list) == value.toArray().size() ? list : std::vector<T>();
}

template <typename T>
void insertIfAny(QJsonObject &object, const QString &key, const std::optional<T> &value) {
  if (value) {
    object.insert(key, *value);
  }
}

QJsonObject toJson(const PetPack::Action &action) {
  QJsonObject object{{QStringLiteral("id"), action.id},
                     {QStringLiteral("label"), action.label},
                     {QStringLiteral("frameSet"), action.frameSet},
                     {QStringLiteral("loop"), action.loop},
                     {QStringLiteral("tags"), QJsonArray::fromStringList(action.tags)}};
  insertIfAny(object, QStringLiteral("prompt"), action.prompt);
  return object;
}

QJsonObject toJson(const PetPack::ReactionRule &rule) {
  QJsonObject object{{QStringLiteral("event"), rawValue(rule.event)},
                     {QStringLiteral("action"), rule.action},
                     {QStringLiteral("notify"), rule.notify}};
  if (rule.lineBucket) {
    object.insert(QStringLiteral("lineBucket"), rawValue(*rule.lineBucket));
  }
  insertIfAny(object, QStringLiteral("priority"), rule.priority);
  return object;
}

QJsonObject toJson(const PetPack::LoopRule &rule) {
  return {{QStringLiteral("mood"), rule.mood}, {QStringLiteral("action"), rule.action}};
}

QJsonObject toJson(const PetPack::Generation &generation) {
  return {{QStringLiteral("source"), generation.source},
          {QStringLiteral("style"), generation.style},
          {QStringLiteral("brief"), generation.brief},
          {QStringLiteral("questions"), QJsonArray::fromStringList(generation.questions)}};
}

QJsonObject toJson(const PetPack::MotionProfile &motion) {
  QJsonObject object;
  insertIfAny(object, QStringLiteral("style"), motion.style);
  insertIfAny(object, QStringLiteral("breathAmplitude"), motion.breathAmplitude);
  insertIfAny(object, QStringLiteral("breathPeriod"), motion.breathPeriod);
  insertIfAny(object, QStringLiteral("bobAmplitude"), motion.bobAmplitude);
  insertIfAny(object, QStringLiteral("swayDegrees"), motion.swayDegrees);
  insertIfAny(object, QStringLiteral("tempo"), motion.tempo);
  return object;
}

template <typename T> QJsonArray toJsonArray(const std::vector<T> &items) {
  QJsonArray array;
  for (const T &item : items) {
    array.append(toJson(item));
  }
  return array;
}

/// The rule of highest priority for this event; the first listed of equals; null when none.
const PetPack::ReactionRule *bestRule(const PetPack &pack, PetEventKind kind) {
  const PetPack::ReactionRule *best = nullptr;
  for (const auto &rule : pack.reactions) {
    const bool better = best == nullptr || rule.priority.value_or(0) > best->priority.value_or(0);
    if (rule.event == kind && better) {
      best = &rule;
    }
  }
  return best;
}

} // namespace

QString rawValue(PetEventKind kind) { return nameOf(eventNames, kind); }

std::optional<PetEventKind> petEventKind(const QString &rawValue) {
  return kindNamed<PetEventKind>(eventNames, rawValue);
}

QString rawValue(LineBucket bucket) { return nameOf(bucketNames, bucket); }

std::optional<LineBucket> lineBucket(const QString &rawValue) {
  return kindNamed<LineBucket>(bucketNames, rawValue);
}

std::optional<QString> PetPack::actionID(PetEventKind kind) const {
  const ReactionRule *const rule = bestRule(*this, kind);
  return rule != nullptr ? std::optional(rule->action) : std::nullopt;
}

std::optional<LineBucket> PetPack::lineBucketFor(PetEventKind kind) const {
  const ReactionRule *const rule = bestRule(*this, kind);
  return rule != nullptr ? rule->lineBucket : std::nullopt;
}

bool PetPack::notify(PetEventKind kind, bool fallback) const {
  const auto rule = std::ranges::find(reactions, kind, &ReactionRule::event);
  return rule != reactions.end() ? rule->notify : fallback;
}

QString PetPack::frameSet(const QString &actionName) const {
  const auto action = std::ranges::find(actions, actionName, &Action::id);
  return action != actions.end() ? action->frameSet : actionName;
}

QString PetPack::loopAction(const QString &mood) const {
  const auto rule = std::ranges::find(loops, mood, &LoopRule::mood);
  return frameSet(rule != loops.end() ? rule->action : FrameSetName::idle);
}

bool PetPack::hasLoopRule(const QString &mood) const {
  return std::ranges::find(loops, mood, &LoopRule::mood) != loops.end();
}

std::optional<PetPack> petPackFromJson(const QByteArray &text) {
  const auto parsed = Json::parseObject(text);
  if (!parsed) {
    return std::nullopt;
  }
  const QJsonValue object(*parsed);
  const PetPack fallback;
  return PetPack{.schemaVersion =
                     integer(object[u"schemaVersion"]).value_or(fallback.schemaVersion),
                 .id = object[u"id"].toString(),
                 .displayName = object[u"displayName"].toString(),
                 .tier = integer(object[u"tier"]).value_or(fallback.tier),
                 .personaPrompt = object[u"personaPrompt"].toString(),
                 .generation = generationFrom(object[u"generation"]),
                 .motion = motionFrom(object[u"motion"]),
                 .actions = strictList(object[u"actions"], actionFrom),
                 .reactions = lossyList(object[u"reactions"], reactionFrom),
                 .loops = lossyList(object[u"loops"], loopFrom),
                 .autonomousActions = texts(object[u"autonomousActions"]).value_or(QStringList())};
}

QJsonObject toJson(const PetPack &pack) {
  QJsonObject object{
      {QStringLiteral("schemaVersion"), pack.schemaVersion},
      {QStringLiteral("id"), pack.id},
      {QStringLiteral("displayName"), pack.displayName},
      {QStringLiteral("tier"), pack.tier},
      {QStringLiteral("personaPrompt"), pack.personaPrompt},
      {QStringLiteral("actions"), toJsonArray(pack.actions)},
      {QStringLiteral("reactions"), toJsonArray(pack.reactions)},
      {QStringLiteral("loops"), toJsonArray(pack.loops)},
      {QStringLiteral("autonomousActions"), QJsonArray::fromStringList(pack.autonomousActions)}};
  if (pack.generation) {
    object.insert(QStringLiteral("generation"), toJson(*pack.generation));
  }
  if (pack.motion) {
    object.insert(QStringLiteral("motion"), toJson(*pack.motion));
  }
  return object;
}

} // namespace morvo
