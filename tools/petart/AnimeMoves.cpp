#include "AnimeMoves.h"

#include "AnimeActs.h"
#include "AnimeFigure.h"
#include "AnimeLoops.h"
#include "Spring.h"

#include <algorithm>
#include <array>

namespace morvo::AnimeMoves {
namespace {

using Loop = AnimePose (*)(double phase);
using Act = void (*)(AnimePose &pose, double phase);

struct Move {
  FrameSet set;
  Loop loop;
  Act act;
};

constexpr Move loop(QStringView name, int frames, Loop pose) {
  return {{name, frames, true}, pose, nullptr};
}

constexpr Move act(QStringView name, int frames, Act pose) {
  return {{name, frames, false}, nullptr, pose};
}

constexpr std::array moves{
    loop(u"idle", 60, AnimeLoops::idle),
    act(u"celebrate", 48, AnimeActs::celebrate),
    act(u"alert", 38, AnimeActs::alert),
    loop(u"sleep", 60, AnimeLoops::sleep),
    act(u"greet", 42, AnimeActs::greet),
    act(u"petted", 44, AnimeActs::petted),
    loop(u"watching", 60, AnimeLoops::watching),
    loop(u"code", 60, AnimeLoops::code),
    loop(u"walk", 20, AnimeLoops::walk),
    loop(u"carried", 24, AnimeLoops::carried),
    loop(u"tossed", 18, AnimeLoops::tossed),
    act(u"heart", 48, AnimeActs::heart),
    act(u"vow", 48, AnimeActs::vow),
};

// Hair is heavy and slow, the crest and the ears are light and quick.
constexpr Spring heavy{.frequency = 1.5, .damping = 0.32};
constexpr Spring heavier{.frequency = 1.15, .damping = 0.28};
constexpr Spring light{.frequency = 2.6, .damping = 0.26};

std::vector<double> track(const std::vector<AnimePose> &poses, double (*value)(const AnimePose &)) {
  std::vector<double> values;
  std::ranges::transform(poses, std::back_inserter(values), value);
  return values;
}

/// Lets everything that hangs on the head come after it.
void letFollow(std::vector<AnimePose> &poses, bool isLoop) {
  const auto across =
      track(poses, [](const AnimePose &pose) { return AnimeFigure::crown(pose).x(); });
  const auto down =
      track(poses, [](const AnimePose &pose) { return AnimeFigure::crown(pose).y(); });
  const auto lean = track(poses, AnimeFigure::headLean);
  const auto tail = heavy.lag(across, isLoop);
  const auto tip = heavier.lag(across, isLoop);
  const auto rise = heavy.lag(down, isLoop);
  const auto crest = light.lag(across, isLoop);
  const auto spring = light.lag(down, isLoop);
  const auto hang = heavy.follow(lean, isLoop);
  for (std::size_t frame = 0; frame < poses.size(); ++frame) {
    AnimePose::Follow &follow = poses[frame].follow;
    follow.tail += -0.8 * tail[frame] - 0.6 * hang[frame];
    follow.tip += -1.3 * tip[frame] - 0.4 * hang[frame];
    follow.locks += 0.55 * tail[frame] + 0.75 * hang[frame];
    follow.crest += -1.1 * crest[frame] + 0.5 * spring[frame];
    follow.ears += std::clamp(0.35 * spring[frame], -14.0, 18.0);
    follow.lift += std::clamp(-0.75 * rise[frame], -16.0, 44.0);
  }
}

std::vector<AnimePose> looped(const Move &move) {
  std::vector<AnimePose> poses;
  for (int frame = 0; frame < move.set.frames; ++frame) {
    poses.push_back(move.loop(move.set.phase(frame)));
  }
  letFollow(poses, true);
  return poses;
}

std::vector<AnimePose> acted(const Move &move) {
  const AnimePose rest = looped(moves.front()).front();
  std::vector<AnimePose> poses;
  for (int frame = 0; frame < move.set.frames; ++frame) {
    AnimePose pose = rest;
    // What hangs already hangs as it does at rest: only what the act adds is to follow.
    pose.follow.tail += 0.6 * AnimeFigure::headLean(rest);
    pose.follow.tip += 0.4 * AnimeFigure::headLean(rest);
    pose.follow.locks -= 0.75 * AnimeFigure::headLean(rest);
    move.act(pose, move.set.phase(frame));
    poses.push_back(pose);
  }
  letFollow(poses, false);
  return poses;
}

} // namespace

std::span<const FrameSet> frameSets() {
  static const auto sets = [] {
    std::array<FrameSet, moves.size()> all;
    std::ranges::transform(moves, all.begin(), &Move::set);
    return all;
  }();
  return sets;
}

std::vector<AnimePose> poses(const FrameSet &set) {
  const auto move =
      std::ranges::find(moves, set.name, [](const Move &known) { return known.set.name; });
  return move->loop != nullptr ? looped(*move) : acted(*move);
}

} // namespace morvo::AnimeMoves
