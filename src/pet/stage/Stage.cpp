#include "pet/stage/Stage.h"

#include "pet/stage/RunningAction.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace morvo {
namespace {

using NodePointer = std::shared_ptr<Node>;

/// Less than this is walked through: the usual steps between two pictures are far shorter.
constexpr Duration leastLeap = std::chrono::seconds(10);

/// Calls `visit` for every node from the root down. It must not change the tree.
template <typename Visit> void forEachNode(const NodePointer &node, const Visit &visit) {
  visit(node);
  for (const NodePointer &child : node->children()) {
    forEachNode(child, visit);
  }
}

} // namespace

Stage::Stage(Instant start) : m_root(std::make_shared<Node>()), m_now(start) {}

void Stage::advance(Instant to) {
  if (m_advancing || to < m_now) {
    return;
  }
  const QScopedValueRollback advancing(m_advancing, true);
  int rounds = 0;
  for (;;) {
    if (settle()) {
      if (++rounds == mostRounds) {
        return;
      }
      continue;
    }
    if (m_now == to) {
      return;
    }
    rounds = 0;
    pass(to - m_now);
  }
}

void Stage::pass(Duration rest) {
  if (rest >= leastLeap) {
    const Duration far = std::min(rest, leapable());
    if (far >= leastLeap) {
      move(far);
      m_now += far;
      return;
    }
  }
  const Duration by = std::min(activity().nextEnd.value_or(rest), rest);
  move(by);
  m_now += by;
}

Duration Stage::leapable() const {
  Duration far = Action::forever;
  forEachNode(m_root, [&](const NodePointer &node) {
    ActionEffects others;
    for (const auto &running : node->m_running) {
      const ActionEffects &effects = running->run.action().content().effects;
      if (!running->run.canLeap()) {
        far = std::min(far, running->run.untilNextEnd());
      }
      if (!effects.isApartFrom(others)) {
        far = Duration::zero();
      }
      others.add(effects);
    }
  });
  return far;
}

void Stage::move(Duration by) {
  forEachNode(m_root, [&](const NodePointer &node) {
    for (const auto &running : node->m_running) {
      // Only a leap is longer than what is left of a part.
      if (by > running->run.untilNextEnd()) {
        running->run.leap(*node, by);
      } else {
        running->run.step(*node, by);
      }
    }
  });
  forEachNode(m_root, [&](const NodePointer &node) {
    for (const auto &running : node->m_running) {
      ActionRun::Blocks blocks;
      running->run.proceed(*node, blocks);
      addDue(node, running, std::move(blocks));
    }
  });
}

void Stage::addDue(const NodePointer &node, const std::shared_ptr<RunningAction> &action,
                   ActionRun::Blocks blocks) {
  for (auto &block : blocks) {
    m_due.push_back({node, action, std::move(block)});
  }
}

bool Stage::settle() {
  bool begun = false;
  forEachNode(m_root, [&](const NodePointer &node) {
    for (const auto &running : node->m_running) {
      if (running->begun) {
        continue;
      }
      begun = running->begun = true;
      ActionRun::Blocks blocks;
      running->run.begin(*node, blocks);
      addDue(node, running, std::move(blocks));
    }
  });
  const bool called = callDue();
  forEachNode(m_root, [](const NodePointer &node) {
    std::erase_if(node->m_running, [](const auto &running) { return running->run.isFinished(); });
  });
  return begun || called;
}

bool Stage::callDue() {
  const auto due = std::exchange(m_due, {});
  for (const DueBlock &each : due) {
    if (!each.action->removed && isInTree(*each.node)) {
      each.block();
    }
  }
  return !due.empty();
}

bool Stage::isInTree(const Node &node) const {
  const Node *top = &node;
  while (top->parent() != nullptr) {
    top = top->parent();
  }
  return top == m_root.get();
}

Activity Stage::activity() const {
  Activity activity;
  forEachNode(m_root, [&](const NodePointer &node) {
    for (const auto &running : node->m_running) {
      if (running->begun) {
        running->run.report(activity);
      } else {
        activity.nextEnd = Duration::zero();
      }
    }
  });
  return activity;
}

} // namespace morvo
