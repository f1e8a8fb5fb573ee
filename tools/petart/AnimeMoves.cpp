#include "AnimeMoves.h"

#include "AnimeActs.h"
#include "AnimeFigure.h"
#include "AnimeLoops.h"
#include "Spring.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace morvo::AnimeMoves {
namespace {

using Loop = AnimePose (*)(double phase);
using Act = void (*)(AnimePose &pose, double phase);

struct Move {
  FrameSet set;
  Loop loop = nullptr;
  Act act = nullptr;
};

constexpr Move loop(QStringView name, int frames, Loop pose) {
  return {{name, frames, true}, pose, nullptr};
}

constexpr Move act(QStringView name, int frames, Act pose) {
  return {{name, frames, false}, nullptr, pose};
}

constexpr std::array moves{
    loop(u"idle", 56, AnimeLoops::idle),
    act(u"celebrate", 46, AnimeActs::celebrate),
    act(u"alert", 36, AnimeActs::alert),
    loop(u"sleep", 48, AnimeLoops::sleep),
    act(u"greet", 40, AnimeActs::greet),
    act(u"petted", 42, AnimeActs::petted),
    loop(u"watching", 48, AnimeLoops::watching),
    loop(u"code", 48, AnimeLoops::code),
    loop(u"walk", 20, AnimeLoops::walk),
    loop(u"carried", 24, AnimeLoops::carried),
    loop(u"tossed", 18, AnimeLoops::tossed),
    act(u"heart", 44, AnimeActs::heart),
    act(u"vow", 44, AnimeActs::vow),
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

/// Bends ever less the nearer it comes to `most`, as hair does that has a root.
double limited(double value, double most) { return most * std::tanh(value / most); }

/// The same with a limit of its own for negative values: the ponytail, which hangs on one side, has
/// less room away from the head.
double limited(double value, double least, double most) {
  return limited(value, value < 0 ? least : most);
}

/// Lets everything that hangs on the head come after it. A head that leans by `rest` has its hair
/// as the poses tell it already.
void letFollow(std::vector<AnimePose> &poses, bool isLoop, double rest) {
  const auto across =
      track(poses, [](const AnimePose &pose) { return AnimeFigure::crown(pose).x(); });
  const auto down =
      track(poses, [](const AnimePose &pose) { return AnimeFigure::crown(pose).y(); });
  auto lean = track(poses, AnimeFigure::headLean);
  std::ranges::for_each(lean, [rest](double &angle) { angle -= rest; });
  const auto tail = heavy.lag(across, isLoop);
  const auto tip = heavier.lag(across, isLoop);
  const auto rise = heavy.lag(down, isLoop);
  const auto crest = light.lag(across, isLoop);
  const auto spring = light.lag(down, isLoop);
  const auto hang = heavy.follow(lean, isLoop);
  for (std::size_t frame = 0; frame < poses.size(); ++frame) {
    AnimePose::Follow &follow = poses[frame].follow;
    follow.tail += limited(-0.7 * tail[frame] - 0.6 * hang[frame], 9, 22);
    follow.tip += limited(-1.1 * tip[frame] - 0.4 * hang[frame], 12, 30);
    follow.locks += limited(0.5 * tail[frame] + 0.75 * hang[frame], 20);
    follow.crest += limited(-1.1 * crest[frame] + 0.5 * spring[frame], 30);
    follow.ears += limited(0.35 * spring[frame], 16);
    follow.lift += limited(-0.7 * rise[frame], 12, 15);
  }
}

std::vector<AnimePose> looped(const Move &move) {
  std::vector<AnimePose> poses;
  poses.reserve(static_cast<std::size_t>(move.set.frames));
  for (int frame = 0; frame < move.set.frames; ++frame) {
    poses.push_back(move.loop(move.set.phase(frame)));
  }
  letFollow(poses, true, 0);
  return poses;
}

std::vector<AnimePose> acted(const Move &move) {
  const AnimePose rest = looped(moves.front()).front();
  std::vector<AnimePose> poses(static_cast<std::size_t>(move.set.frames), rest);
  for (int frame = 0; frame < move.set.frames; ++frame) {
    move.act(poses.at(static_cast<std::size_t>(frame)), move.set.phase(frame));
  }
  letFollow(poses, false, AnimeFigure::headLean(rest));
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
