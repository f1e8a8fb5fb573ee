#pragma once

#include "pet/stage/Action.h"
#include "pet/stage/ActionEffects.h"

#include <optional>
#include <variant>

namespace morvo {

/// What an action is made of: a kind with its figures, a time and an easing.
struct Action::Content {
  struct Sequence {
    std::vector<Action> actions;
  };
  struct Group {
    std::vector<Action> actions;
  };
  struct Repeat {
    Action body;
  };
  struct Wait {};
  struct Block {
    std::function<void()> block;
  };
  struct Remove {};
  struct MoveBy {
    QPointF offset;
  };
  struct RotateTo {
    double angle;
    Arc arc;
  };
  struct RotateBy {
    double angle;
  };
  struct ScaleTo {
    std::optional<double> x;
    std::optional<double> y;
  };
  struct FadeTo {
    double alpha;
  };
  struct Animate {
    Frames frames;
    Duration timePerFrame;
  };
  using Kind = std::variant<Sequence, Group, Repeat, Wait, Block, Remove, MoveBy, RotateTo,
                            RotateBy, ScaleTo, FadeTo, Animate>;

  Kind kind;
  Duration time = Duration::zero();
  Easing easing = Easing::linear;
  ActionEffects effects;
};

} // namespace morvo
