#include "pet/stage/ActionContent.h"

#include <algorithm>
#include <utility>

namespace morvo {
namespace {

Duration atLeastNothing(Duration duration) { return std::max(duration, Duration::zero()); }

/// The sum, at most `forever`.
Duration plus(Duration a, Duration b) { return a > Action::forever - b ? Action::forever : a + b; }

ActionEffects together(const std::vector<Action> &actions) {
  ActionEffects effects;
  for (const Action &action : actions) {
    effects.add(action.content().effects);
  }
  return effects;
}

} // namespace

Action::Action(Content content) : m_content(std::make_shared<const Content>(std::move(content))) {}

Duration Action::duration() const { return m_content->time; }

Action Action::sequence(std::vector<Action> actions) {
  Duration time = Duration::zero();
  for (const Action &action : actions) {
    time = plus(time, action.duration());
  }
  auto effects = together(actions);
  return Action(
      Content{.kind = Content::Sequence{std::move(actions)}, .time = time, .effects = effects});
}

Action Action::group(std::vector<Action> actions) {
  Duration time = Duration::zero();
  for (const Action &action : actions) {
    time = std::max(time, action.duration());
  }
  auto effects = together(actions);
  return Action(
      Content{.kind = Content::Group{std::move(actions)}, .time = time, .effects = effects});
}

Action Action::repeatForever(const Action &body) {
  const bool takesTime = body.duration() > Duration::zero();
  auto effects = body.content().effects;
  effects.isContained = false;
  return Action(Content{.kind = Content::Repeat{body},
                        .time = takesTime ? forever : Duration::zero(),
                        .effects = effects});
}

Action Action::wait(Duration duration) {
  return Action(Content{.kind = Content::Wait{}, .time = atLeastNothing(duration)});
}

Action Action::run(std::function<void()> block) {
  return Action(
      Content{.kind = Content::Block{std::move(block)}, .effects = {.isContained = false}});
}

Action Action::removeFromParent() {
  return Action(Content{.kind = Content::Remove{}, .effects = {.isContained = false}});
}

Action Action::moveBy(QPointF offset, Duration duration, Easing easing) {
  return Action(Content{Content::MoveBy{offset},
                        atLeastNothing(duration),
                        easing,
                        {.gains = ActionEffects::position, .travel = offset}});
}

Action Action::rotateTo(double angle, Duration duration, Easing easing, Arc arc) {
  return Action(Content{Content::RotateTo{angle, arc},
                        atLeastNothing(duration),
                        easing,
                        {.targets = ActionEffects::rotation}});
}

Action Action::rotateBy(double angle, Duration duration, Easing easing) {
  return Action(Content{Content::RotateBy{angle},
                        atLeastNothing(duration),
                        easing,
                        {.gains = ActionEffects::rotation, .turn = angle}});
}

Action Action::scaleXTo(double scale, Duration duration, Easing easing) {
  return scaleTo(scale, std::nullopt, duration, easing);
}

Action Action::scaleYTo(double scale, Duration duration, Easing easing) {
  return scaleTo(std::nullopt, scale, duration, easing);
}

Action Action::scaleTo(double scale, Duration duration, Easing easing) {
  return scaleTo(scale, scale, duration, easing);
}

Action Action::scaleTo(std::optional<double> x, std::optional<double> y, Duration duration,
                       Easing easing) {
  return Action(
      Content{Content::ScaleTo{.x = x, .y = y},
              atLeastNothing(duration),
              easing,
              {.targets = (x ? ActionEffects::xScale : 0U) | (y ? ActionEffects::yScale : 0U)}});
}

Action Action::fadeIn(Duration duration, Easing easing) {
  return Action(Content{
      Content::FadeTo{1}, atLeastNothing(duration), easing, {.targets = ActionEffects::alpha}});
}

Action Action::fadeOut(Duration duration, Easing easing) {
  return Action(Content{
      Content::FadeTo{0}, atLeastNothing(duration), easing, {.targets = ActionEffects::alpha}});
}

Action Action::animate(Frames frames, Duration timePerFrame) {
  const Duration each = atLeastNothing(timePerFrame);
  const auto count = static_cast<Duration::rep>(frames.size());
  return Action(Content{.kind = Content::Animate{std::move(frames), each},
                        .time = each * count,
                        .effects = {.targets = ActionEffects::texture}});
}

} // namespace morvo
