#include "pet/stage/Node.h"

#include "pet/stage/RunningAction.h"

#include <algorithm>
#include <utility>

namespace morvo {

Node::Node() = default;

Node::~Node() {
  for (const auto &child : m_children) {
    child->m_parent = nullptr;
  }
}

void Node::touch() {
  for (Node *node = this; node != nullptr; node = node->m_parent) {
    ++node->m_revision;
  }
}

double Node::turning() const {
  double sum = 0;
  for (const auto &running : m_running) {
    sum += running->run.turned();
  }
  return sum;
}

void Node::addChild(std::shared_ptr<Node> child) {
  Q_ASSERT(child && child->m_parent == nullptr && child.get() != this);
  child->m_parent = this;
  m_children.push_back(std::move(child));
  touch();
}

void Node::removeFromParent() {
  if (m_parent == nullptr) {
    return;
  }
  Node *const parent = std::exchange(m_parent, nullptr);
  const auto own = std::ranges::find(parent->m_children, this, &std::shared_ptr<Node>::get);
  parent->touch();
  // The parent's share may be the last one, so nothing may follow that touches this node.
  parent->m_children.erase(own);
}

void Node::run(const Action &action, const QString &key) {
  removeAction(key);
  m_running.push_back(
      std::make_shared<RunningAction>(RunningAction{.key = key, .run = ActionRun(action)}));
}

std::optional<Action> Node::actionForKey(const QString &key) const {
  const auto found = std::ranges::find_if(
      m_running, [&](const auto &running) { return !key.isEmpty() && running->key == key; });
  return found == m_running.end() ? std::nullopt : std::optional((*found)->run.action());
}

void Node::removeAction(const QString &key) {
  if (key.isEmpty()) {
    return;
  }
  std::erase_if(m_running, [&](const auto &running) {
    const bool matches = running->key == key;
    running->removed = running->removed || matches;
    return matches;
  });
}

} // namespace morvo
