#include "pet/stage/Stage.h"

#include "pet/stage/RunningAction.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace morvo {
namespace {

using NodePointer = std::shared_ptr<Node>;

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
    const Duration rest = to - m_now;
    const Duration by = std::min(activity().nextEnd.value_or(rest), rest);
    move(by);
    m_now += by;
  }
}

void Stage::move(Duration by) {
  forEachNode(m_root, [&](const NodePointer &node) {
    for (const auto &running : node->m_running) {
      ActionRun::Blocks blocks;
      running->run.step(*node, by, blocks);
      for (auto &block : blocks) {
        m_due.push_back({node, running, std::move(block)});
      }
    }
  });
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
      for (auto &block : blocks) {
        m_due.push_back({node, running, std::move(block)});
      }
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
