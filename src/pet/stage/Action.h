#pragma once

#include "base/Time.h"
#include "pet/stage/Arc.h"
#include "pet/stage/Easing.h"
#include "pet/stage/SpriteFrame.h"

#include <QPointF>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace morvo {

/// Something that happens to a node over time, as an immutable value: the same action may run on
/// several nodes at once. Cheap to copy. Durations below nothing count as nothing.
///
/// Moves and rotations by an angle add to where the node is, so several at once add up. Actions to
/// a target (`rotateTo`, `scaleTo`, fades) read the node when they begin and own the property until
/// they end exactly on the target; of two the one started later wins. What rotations by an angle
/// add comes on top of a rotation to a target while they run; it ends with them where one still
/// owns the angle, and stays where none does.
class Action {
public:
  using Frames = std::vector<SpriteFrame>;

  /// One after the other; what a step leaves over goes to the next one.
  [[nodiscard]] static Action sequence(std::vector<Action> actions);
  /// All at once; ends with the longest.
  [[nodiscard]] static Action group(std::vector<Action> actions);
  /// Again and again. A body that takes no time is run once only.
  [[nodiscard]] static Action repeatForever(const Action &body);

  [[nodiscard]] static Action wait(Duration duration);
  /// Calls `block` once. It may do anything to the stage: start, replace and remove actions, its
  /// own included, add and remove nodes.
  [[nodiscard]] static Action run(std::function<void()> block);
  /// Takes the node out of its parent.
  [[nodiscard]] static Action removeFromParent();

  [[nodiscard]] static Action moveBy(QPointF offset, Duration duration,
                                     Easing easing = Easing::linear);
  /// Radians, anticlockwise.
  [[nodiscard]] static Action rotateTo(double angle, Duration duration,
                                       Easing easing = Easing::linear, Arc arc = Arc::shortest);
  [[nodiscard]] static Action rotateBy(double angle, Duration duration,
                                       Easing easing = Easing::linear);
  [[nodiscard]] static Action scaleXTo(double scale, Duration duration,
                                       Easing easing = Easing::linear);
  [[nodiscard]] static Action scaleYTo(double scale, Duration duration,
                                       Easing easing = Easing::linear);
  [[nodiscard]] static Action scaleTo(double scale, Duration duration,
                                      Easing easing = Easing::linear);
  /// Alpha to 1.
  [[nodiscard]] static Action fadeIn(Duration duration, Easing easing = Easing::linear);
  /// Alpha to 0.
  [[nodiscard]] static Action fadeOut(Duration duration, Easing easing = Easing::linear);
  /// Shows each frame for `timePerFrame`, the first at once; the last one stays. The node keeps its
  /// size.
  [[nodiscard]] static Action animate(Frames frames, Duration timePerFrame);

  /// The whole time it takes; `forever` when it never ends.
  [[nodiscard]] Duration duration() const;
  static constexpr Duration forever = Duration::max();

  /// What it is made of; for `ActionRun`.
  struct Content;
  [[nodiscard]] const Content &content() const { return *m_content; }

private:
  explicit Action(Content content);
  [[nodiscard]] static Action scaleTo(std::optional<double> x, std::optional<double> y,
                                      Duration duration, Easing easing);

  std::shared_ptr<const Content> m_content;
};

} // namespace morvo
