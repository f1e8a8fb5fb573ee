#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace morvo {

/// What can happen that a pet may answer.
enum class PetEventKind {
  agentDone,
  agentNeedsInput,
  agentRunning,
  userPet,
  userReturned,
  approvalRequest,
  quotaHigh,
  quotaCritical,
  restNudge,
  idle,
};

/// "agent_done", …
[[nodiscard]] QString rawValue(PetEventKind kind);
[[nodiscard]] std::optional<PetEventKind> petEventKind(const QString &rawValue);

/// One list of the line pack.
enum class LineBucket { done, needsInput, petted, digest, usage, reflect, rest };

/// "done", "needsInput", …
[[nodiscard]] QString rawValue(LineBucket bucket);
[[nodiscard]] std::optional<LineBucket> lineBucket(const QString &rawValue);

/// The data that turns image sequences into a pet: which actions it owns, which action answers
/// which event, which loops in which mood, and how its body moves. One pack belongs to one persona
/// and is stored as `manifest.json` beside the folders of frames it names.
struct PetPack {
  struct Action {
    QString id;
    QString label;    ///< Shown in menus; the id when the file names none.
    QString frameSet; ///< Folder of the frames; the id when the file names none.
    bool loop = false;
    QStringList tags;
    std::optional<QString> prompt; ///< For making the frames.

    bool operator==(const Action &) const = default;
  };

  struct ReactionRule {
    PetEventKind event = PetEventKind::idle;
    QString action;
    std::optional<LineBucket> lineBucket;
    bool notify = false;
    std::optional<qint64> priority; ///< Higher wins; none counts as 0.

    bool operator==(const ReactionRule &) const = default;
  };

  struct LoopRule {
    QString mood;
    QString action;

    bool operator==(const LoopRule &) const = default;
  };

  struct Generation {
    QString source;
    QString style;
    QString brief;
    QStringList questions;

    bool operator==(const Generation &) const = default;
  };

  struct MotionProfile {
    std::optional<QString> style;          ///< "floaty" or "grounded".
    std::optional<double> breathAmplitude; ///< Fraction of the height.
    std::optional<double> breathPeriod;    ///< Seconds.
    std::optional<double> bobAmplitude;    ///< Points.
    std::optional<double> swayDegrees;
    std::optional<double> tempo; ///< Factor on how often the pet acts by itself.

    bool operator==(const MotionProfile &) const = default;
  };

  qint64 schemaVersion = 1;
  QString id;
  QString displayName;
  qint64 tier = 2;
  QString personaPrompt;
  std::optional<Generation> generation;
  std::optional<MotionProfile> motion;
  std::vector<Action> actions;
  std::vector<ReactionRule> reactions;
  std::vector<LoopRule> loops;
  QStringList autonomousActions;

  /// The action of the rule of highest priority for this event; the first listed wins a tie.
  [[nodiscard]] std::optional<QString> actionID(PetEventKind kind) const;
  /// The bucket of that same rule, if it names one.
  [[nodiscard]] std::optional<LineBucket> lineBucketFor(PetEventKind kind) const;
  /// Whether the first listed rule for this event notifies, whatever its priority.
  [[nodiscard]] bool notify(PetEventKind kind, bool fallback) const;
  /// The frame set of the first action with this id; the name itself when there is none.
  [[nodiscard]] QString frameSet(const QString &actionName) const;
  /// The frame set of the first loop rule for this mood, "idle" when there is none.
  [[nodiscard]] QString loopAction(const QString &mood) const;
  [[nodiscard]] bool hasLoopRule(const QString &mood) const;

  bool operator==(const PetPack &) const = default;
};

/// Tolerant: a damaged field costs only itself, as `PetPack.cpp` says field by field. Nothing only
/// when `text` is no JSON object. Never throws, whatever the bytes.
[[nodiscard]] std::optional<PetPack> petPackFromJson(const QByteArray &text);
[[nodiscard]] QJsonObject toJson(const PetPack &pack);

} // namespace morvo
