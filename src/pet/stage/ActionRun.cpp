#include "pet/stage/ActionRun.h"

#include "pet/stage/Node.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <utility>

namespace morvo {
namespace {

/// The way from one angle to another, from −π to π.
double shortestArc(double from, double to) {
  return std::remainder(to - from, 2 * std::numbers::pi);
}

double between(double start, double end, double progress) {
  return progress >= 1 ? end : start + (end - start) * progress;
}

} // namespace

ActionRun::ActionRun(Action action) : m_action(std::move(action)) {}

bool ActionRun::isComposite() const {
  return as<Content::Sequence>() != nullptr || as<Content::Group>() != nullptr ||
         as<Content::Repeat>() != nullptr;
}

void ActionRun::begin(Node &node, Blocks &due) {
  if (as<Content::Sequence>()) {
    beginNextInSequence(node, due);
  } else if (as<Content::Group>()) {
    beginGroup(node, due);
  } else if (as<Content::Repeat>()) {
    beginRepeat(node, due);
  } else {
    beginLeaf(node, due);
  }
}

void ActionRun::step(Node &node, Duration by) {
  if (m_finished) {
    return;
  }
  if (isComposite()) {
    m_elapsed += by;
    for (ActionRun &part : m_parts) {
      part.step(node, by);
    }
  } else {
    stepLeaf(node, by);
  }
}

void ActionRun::proceed(Node &node, Blocks &due) {
  if (m_finished || !isComposite()) {
    return;
  }
  for (ActionRun &part : m_parts) {
    part.proceed(node, due);
  }
  if (!std::ranges::all_of(m_parts, &ActionRun::isFinished)) {
    return;
  }
  if (as<Content::Sequence>()) {
    beginNextInSequence(node, due);
  } else if (as<Content::Repeat>()) {
    beginRepeat(node, due);
  } else {
    m_finished = true;
  }
}

void ActionRun::beginPart(const Action &action, Node &node, Blocks &due) {
  // A turn to a target starts from where the parts before it have left the node.
  const bool setsAngle = (action.content().effects.targets & ActionEffects::rotation) != 0;
  m_turned = setsAngle ? 0 : turned();
  m_parts.clear();
  m_parts.emplace_back(action).begin(node, due);
}

void ActionRun::beginNextInSequence(Node &node, Blocks &due) {
  const auto &actions = as<Content::Sequence>()->actions;
  while (m_next < actions.size()) {
    beginPart(actions[m_next++], node, due);
    if (!m_parts.front().isFinished()) {
      return;
    }
  }
  m_finished = true;
}

void ActionRun::beginGroup(Node &node, Blocks &due) {
  for (const Action &action : as<Content::Group>()->actions) {
    m_parts.emplace_back(action).begin(node, due);
  }
  m_finished = std::ranges::all_of(m_parts, &ActionRun::isFinished);
}

void ActionRun::beginRepeat(Node &node, Blocks &due) {
  m_elapsed = Duration::zero();
  beginPart(as<Content::Repeat>()->body, node, due);
  // A body that takes time cannot be finished yet; one that takes none is run once.
  m_finished = m_parts.front().isFinished();
}

bool ActionRun::canLeap() const {
  const auto *repeat = as<Content::Repeat>();
  if (repeat == nullptr || m_finished) {
    return false;
  }
  const ActionEffects &effects = repeat->body.content().effects;
  // What is both added to and brought to a value gains nothing a round, but not the sum either.
  return effects.isContained && (effects.targets & effects.gains) == 0;
}

void ActionRun::leap(Node &node, Duration by) {
  const Action &body = as<Content::Repeat>()->body;
  const Duration round = body.duration();
  // After the end of this round and of a whole one, what has targets stands where each round
  // leaves it.
  const Duration first = std::min(by, round - m_elapsed + round);
  walk(node, first);
  const auto rounds = (by - first) / round;
  const ActionEffects &effects = body.content().effects;
  node.setPosition(node.position() + effects.travel * static_cast<double>(rounds));
  const double turn = effects.turn * static_cast<double>(rounds);
  node.setRotation(node.rotation() + turn);
  m_turned += turn;
  walk(node, (by - first) % round);
}

void ActionRun::walk(Node &node, Duration by) {
  Blocks none;
  while (by > Duration::zero()) {
    const Duration part = std::min(by, untilNextEnd());
    step(node, part);
    proceed(node, none);
    by -= part;
  }
}

void ActionRun::beginLeaf(Node &node, Blocks &due) {
  if (const auto *block = as<Content::Block>()) {
    due.push_back(block->block);
  } else if (as<Content::Remove>()) {
    due.emplace_back([&node] { node.removeFromParent(); });
  } else if (as<Content::RotateTo>()) {
    m_start = node.rotation() - node.turning();
  } else if (as<Content::ScaleTo>()) {
    m_start = node.xScale();
    m_startOther = node.yScale();
  } else if (as<Content::FadeTo>()) {
    m_start = node.alpha();
  }
  stepLeaf(node, Duration::zero());
}

void ActionRun::stepLeaf(Node &node, Duration by) {
  const Duration time = m_action.duration();
  m_elapsed += by;
  m_finished = m_elapsed >= time;
  const double passed = m_finished ? 1 : inSeconds(m_elapsed) / inSeconds(time);
  apply(node, eased(m_action.content().easing, passed));
}

void ActionRun::apply(Node &node, double progress) {
  const double gained = progress - std::exchange(m_progress, progress);
  if (const auto *move = as<Content::MoveBy>()) {
    node.setPosition(node.position() + move->offset * gained);
  } else if (const auto *turn = as<Content::RotateBy>()) {
    node.setRotation(node.rotation() + turn->angle * gained);
    m_turned += turn->angle * gained;
  } else if (const auto *rotate = as<Content::RotateTo>()) {
    const double way = rotate->arc == Arc::shortest ? shortestArc(m_start, rotate->angle)
                                                    : rotate->angle - m_start;
    node.setRotation((progress >= 1 ? rotate->angle : m_start + way * progress) + node.turning());
  } else if (const auto *scale = as<Content::ScaleTo>()) {
    if (scale->x) {
      node.setXScale(between(m_start, *scale->x, progress));
    }
    if (scale->y) {
      node.setYScale(between(m_startOther, *scale->y, progress));
    }
  } else if (const auto *fade = as<Content::FadeTo>()) {
    node.setAlpha(between(m_start, fade->alpha, progress));
  } else if (const auto *animation = as<Content::Animate>()) {
    showFrame(node, *animation);
  }
}

void ActionRun::showFrame(Node &node, const Content::Animate &animation) {
  if (animation.frames.empty()) {
    return;
  }
  const std::size_t last = animation.frames.size() - 1;
  const std::size_t index =
      m_finished ? last
                 : std::min(static_cast<std::size_t>(m_elapsed / animation.timePerFrame), last);
  if (m_frame != index) {
    m_frame = index;
    node.setTexture(animation.frames[index]);
  }
}

Duration ActionRun::untilNextEnd() const {
  if (!isComposite()) {
    return m_action.duration() - m_elapsed;
  }
  Duration least = Action::forever;
  for (const ActionRun &part : m_parts) {
    if (!part.isFinished()) {
      least = std::min(least, part.untilNextEnd());
    }
  }
  return least;
}

double ActionRun::turned() const {
  return std::accumulate(m_parts.begin(), m_parts.end(), m_turned,
                         [](double sum, const ActionRun &part) { return sum + part.turned(); });
}

void ActionRun::report(Activity &activity) const {
  if (isComposite()) {
    for (const ActionRun &part : m_parts) {
      if (!part.isFinished()) {
        part.report(activity);
      }
    }
    return;
  }
  const Duration rest = untilNextEnd();
  activity.nextEnd = std::min(activity.nextEnd.value_or(rest), rest);
  if (const auto *animation = as<Content::Animate>()) {
    if (animation->frames.size() > 1) {
      const Duration each = animation->timePerFrame;
      activity.frameTime = std::min(activity.frameTime.value_or(each), each);
    }
  } else if (!as<Content::Wait>()) {
    activity.inMotion = true;
  }
}

} // namespace morvo
