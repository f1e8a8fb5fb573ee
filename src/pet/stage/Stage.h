#pragma once

#include "pet/stage/Activity.h"
#include "pet/stage/DueBlock.h"
#include "pet/stage/Node.h"

namespace morvo {

/// The time of a tree of nodes: `advance` is the only thing that moves them. Main thread.
///
/// The rules, so that a scene plays the same however often it is looked at:
/// - Time is counted in whole nanoseconds, and a step is cut at each instant at which a part of any
///   action ends. One step of a second leaves the same state as sixty steps of a sixtieth.
/// - At such an instant everything running in the tree is moved first: nodes from the root down,
///   children in the order in which they were added, a node's actions in the order in which they
///   were started. Then, in that same order, the next parts begin where parts have ended.
/// - Then the blocks that are due are called in that same order. A block whose action was removed
///   or replaced by an earlier one, or whose node left the tree, is not called.
/// - Then actions that have ended are dropped. What blocks have started takes part from this
///   instant on; its own blocks that are due at once are called at this instant too.
/// - A node outside the tree rests.
/// - A long step costs no more than a short one: where only endless repetitions run that do not
///   touch each other's properties, their whole rounds are skipped, up to the next instant at which
///   anything else ends. That leaves the state of the small steps, but for the last bits of sums.
/// - Work that keeps adding work without time passing is a bug; after `mostRounds` rounds at one
///   instant the rest waits for the next call, so that it cannot hang the program.
class Stage {
public:
  static constexpr int mostRounds = 1000;

  /// `start` is the instant at which the tree begins to live.
  explicit Stage(Instant start);

  [[nodiscard]] const std::shared_ptr<Node> &root() const { return m_root; }
  [[nodiscard]] Instant now() const { return m_now; }

  /// Lets time pass until `to`; an earlier instant changes nothing. Called from a block it does
  /// nothing either: the step under way takes in what the block did.
  void advance(Instant to);

  /// What the running actions do to the picture.
  [[nodiscard]] Activity activity() const;

private:
  /// Lets at most `rest` pass, up to the next instant at which something has to be settled.
  void pass(Duration rest);
  /// Takes up new actions, calls the blocks that are due, drops what has ended. False when there
  /// was nothing to do.
  bool settle();
  void move(Duration by);
  /// How far the time can leap from here: to the next end of anything that is no endless
  /// repetition; nothing when two actions touch the same.
  [[nodiscard]] Duration leapable() const;
  void addDue(const std::shared_ptr<Node> &node, const std::shared_ptr<RunningAction> &action,
              std::vector<std::function<void()>> blocks);
  bool callDue();
  [[nodiscard]] bool isInTree(const Node &node) const;

  std::shared_ptr<Node> m_root;
  Instant m_now;
  std::vector<DueBlock> m_due;
  bool m_advancing = false;
};

} // namespace morvo
