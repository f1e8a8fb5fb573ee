#pragma once

#include "base/Time.h"
#include "platform/Setting.h"

#include <QString>

#include <deque>
#include <optional>

namespace morvo {

/// Decides for each line that the pet says without being asked whether its bubble shows and whether
/// a notification goes out: the pet does not chatter, and what needs the user is never swallowed.
/// A value; main thread.
class ProactiveGate {
public:
  struct Decision {
    bool bubble = false;
    bool notify = false;

    bool operator==(const Decision &) const = default;
  };

  struct RecentLine {
    QString text;
    Instant at;

    bool operator==(const RecentLine &) const = default;
  };

  /// What happens to a finished task, and what needs the user; small talk is below both.
  static constexpr int donePriority = 1;
  static constexpr int needsUserPriority = 2;

  /// Configured from the settings.
  explicit ProactiveGate(const Setting &setting);

  /// Takes the two figures from the settings; called before each decision, so that a changed
  /// setting holds from the next line on.
  void configure(const Setting &setting);

  /// Decides for one line and remembers what the next decisions need. `now` never goes back.
  /// A priority of 2 or more passes always; 1 with a notification keeps the notification when the
  /// bubble comes too early; anything else passes only when it is neither early nor said lately.
  [[nodiscard]] Decision decide(const QString &line, int priority, bool notify, Instant now);

  double minInterval = 0; ///< Least time between bubbles, in seconds.
  double dedupWindow = 0; ///< How long a line counts as said lately, in seconds.
  std::optional<Instant> lastBubbleAt;
  std::deque<RecentLine> recent; ///< Oldest first; never holds an empty line.

private:
  void forgetOld(Instant now);
  void remember(const QString &line, Instant now);
  [[nodiscard]] bool wasSaidLately(const QString &line) const;
  [[nodiscard]] bool isEarly(Instant now) const;
};

} // namespace morvo
