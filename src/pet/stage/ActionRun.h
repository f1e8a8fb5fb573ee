#pragma once

#include "pet/stage/ActionContent.h"
#include "pet/stage/Activity.h"

namespace morvo {

class Node;

/// How far one action has come on one node.
class ActionRun {
public:
  /// The blocks that were reached, to be called once everything has moved.
  using Blocks = std::vector<std::function<void()>>;

  explicit ActionRun(Action action);

  [[nodiscard]] const Action &action() const { return m_action; }

  /// Takes the first parts up, and what takes no time with them.
  void begin(Node &node, Blocks &due);
  /// Lets `by` pass, which is at most `untilNextEnd`. Only after `begin`.
  void step(Node &node, Duration by);
  /// Takes up what follows the parts that ended with the last step; once everything has moved.
  void proceed(Node &node, Blocks &due);
  [[nodiscard]] bool isFinished() const { return m_finished; }
  /// The time until the next of its parts ends; more than nothing unless finished.
  [[nodiscard]] Duration untilNextEnd() const;
  /// Whether it repeats for ever what only its node knows of, so that it can `leap`.
  [[nodiscard]] bool canLeap() const;
  /// Lets any time pass, whole rounds at once. The state is that which steps would leave.
  void leap(Node &node, Duration by);
  /// How far its turns by an angle have turned the node so far; those before its last turn to a
  /// target do not count.
  [[nodiscard]] double turned() const;
  /// Adds what it does to `activity`.
  void report(Activity &activity) const;

private:
  using Content = Action::Content;

  void beginNextInSequence(Node &node, Blocks &due);
  void beginGroup(Node &node, Blocks &due);
  void beginRepeat(Node &node, Blocks &due);
  void beginPart(const Action &action, Node &node, Blocks &due);
  void beginLeaf(Node &node, Blocks &due);
  void stepLeaf(Node &node, Duration by);
  /// Steps as long as it takes.
  void walk(Node &node, Duration by);
  /// Brings the node from progress `m_progress` to `progress`.
  void apply(Node &node, double progress);
  void showFrame(Node &node, const Content::Animate &animation);
  [[nodiscard]] bool isComposite() const;

  template <typename T> [[nodiscard]] const T *as() const {
    return std::get_if<T>(&m_action.content().kind);
  }

  Action m_action;
  bool m_finished = false;
  /// The parts in play: the present one of a sequence or repetition, all of a group.
  std::vector<ActionRun> m_parts;
  std::size_t m_next = 0;
  /// Since it began; of a repetition, since its present round did.
  Duration m_elapsed = Duration::zero();
  double m_progress = 0;
  /// Where the node stood when an action to a target began.
  double m_start = 0;
  double m_startOther = 0;
  /// Its own share of `turned`, and that of the parts it has left behind.
  double m_turned = 0;
  std::optional<std::size_t> m_frame;
};

} // namespace morvo
