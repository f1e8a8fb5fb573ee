#pragma once

#include <functional>
#include <memory>

namespace morvo {

class Node;
struct RunningAction;

/// A block that an action has reached and the stage is to call.
struct DueBlock {
  std::shared_ptr<Node> node;
  std::shared_ptr<RunningAction> action;
  std::function<void()> block;
};

} // namespace morvo
