#include "pet/stage/ActionContent.h"

#include <algorithm>
#include <utility>

namespace morvo {
namespace {

Duration atLeastNothing(Duration duration) { return std::max(duration, Duration::zero()); }

/// The sum, at most `forever`.
Duration plus(Duration a, Duration b) { return a > Action::forever - b ? Action::forever : a + b; }

} // namespace

Action::Action(Content content) : m_content(std::make_shared<const Content>(std::move(content))) {}

Duration Action::duration() const { return m_content->time; }

Action Action::sequence(std::vector<Action> actions) {
  Duration time = Duration::zero();
  for (const Action &action : actions) {
    time = plus(time, action.duration());
  }
  return Action(Content{.kind = Content::Sequence{std::move(actions)}, .time = time});
}

Action Action::group(std::vector<Action> actions) {
  Duration time = Duration::zero();
  for (const Action &action : actions) {
    time = std::max(time, action.duration());
  }
  return Action(Content{.kind = Content::Group{std::move(actions)}, .time = time});
}

Action Action::repeatForever(const Action &body) {
  const bool takesTime = body.duration() > Duration::zero();
  return Action(
      Content{.kind = Content::Repeat{body}, .time = takesTime ? forever : Duration::zero()});
}

Action Action::wait(Duration duration) {
  return Action(Content{.kind = Content::Wait{}, .time = atLeastNothing(duration)});
}

Action Action::run(std::function<void()> block) {
  return Action(Content{.kind = Content::Block{std::move(block)}});
}

Action Action::removeFromParent() { return Action(Content{.kind = Content::Remove{}}); }

Action Action::moveBy(QPointF offset, Duration duration, Easing easing) {
  return Action(Content{Content::MoveBy{offset}, atLeastNothing(duration), easing});
}

Action Action::rotateTo(double angle, Duration duration, Easing easing, Arc arc) {
  return Action(Content{Content::RotateTo{angle, arc}, atLeastNothing(duration), easing});
}

Action Action::rotateBy(double angle, Duration duration, Easing easing) {
  return Action(Content{Content::RotateBy{angle}, atLeastNothing(duration), easing});
}

Action Action::scaleXTo(double scale, Duration duration, Easing easing) {
  return Action(Content{Content::ScaleTo{.x = scale, .y = {}}, atLeastNothing(duration), easing});
}

Action Action::scaleYTo(double scale, Duration duration, Easing easing) {
  return Action(Content{Content::ScaleTo{.x = {}, .y = scale}, atLeastNothing(duration), easing});
}

Action Action::scaleTo(double scale, Duration duration, Easing easing) {
  return Action(
      Content{Content::ScaleTo{.x = scale, .y = scale}, atLeastNothing(duration), easing});
}

Action Action::fadeIn(Duration duration, Easing easing) {
  return Action(Content{Content::FadeTo{1}, atLeastNothing(duration), easing});
}

Action Action::fadeOut(Duration duration, Easing easing) {
  return Action(Content{Content::FadeTo{0}, atLeastNothing(duration), easing});
}

Action Action::animate(Frames frames, Duration timePerFrame) {
  const Duration each = atLeastNothing(timePerFrame);
  const auto count = static_cast<Duration::rep>(frames.size());
  return Action(Content{.kind = Content::Animate{std::move(frames), each}, .time = each * count});
}

} // namespace morvo
