#include "MorvoActions.h"
#include "MorvoFigure.h"
#include "MorvoOverlap.h"
#include "PetArt.h"

#include <array>
#include <vector>

namespace morvo {
namespace {

using Action = MorvoPose (*)(double phase, const MorvoPose &rest);

constexpr std::array sets{
    FrameSet{u"idle", 52, true},     FrameSet{u"sleep", 48, true},
    FrameSet{u"watching", 42, true}, FrameSet{u"code", 38, true},
    FrameSet{u"droop", 38, true},    FrameSet{u"celebrate", 50, false},
    FrameSet{u"alert", 34, false},   FrameSet{u"greet", 34, false},
    FrameSet{u"petted", 34, false},  FrameSet{u"curious", 45, false},
    FrameSet{u"walk", 24, true},     FrameSet{u"carried", 24, true},
    FrameSet{u"tossed", 16, true},
};
constexpr std::array<Action, sets.size()> actions{
    MorvoActions::idle,   MorvoActions::sleep,     MorvoActions::watching, MorvoActions::code,
    MorvoActions::droop,  MorvoActions::celebrate, MorvoActions::alert,    MorvoActions::greet,
    MorvoActions::petted, MorvoActions::curious,   MorvoActions::walk,     MorvoActions::carried,
    MorvoActions::tossed};

std::vector<MorvoPose> posesOf(const FrameSet &set, Action action, const MorvoPose &rest) {
  std::vector<MorvoPose> poses;
  poses.reserve(static_cast<std::size_t>(set.frames));
  for (int frame = 0; frame < set.frames; ++frame) {
    poses.push_back(action(set.phase(frame), rest));
  }
  MorvoOverlap::apply(poses, set.loop);
  return poses;
}

class MorvoPet : public PetArt {
public:
  MorvoPet() {
    for (std::size_t index = 0; index < sets.size(); ++index) {
      const MorvoPose rest = index == 0 ? MorvoPose() : m_poses.front().front();
      m_poses.push_back(posesOf(sets[index], actions[index], rest));
    }
  }

  [[nodiscard]] std::span<const FrameSet> frameSets() const override { return sets; }

  [[nodiscard]] QImage picture(const FrameSet &set, int frame) const override {
    const auto index = static_cast<std::size_t>(&set - sets.data());
    return MorvoFigure::picture(m_poses.at(index).at(static_cast<std::size_t>(frame)));
  }

private:
  /// Of each set, in the order of `sets`.
  std::vector<std::vector<MorvoPose>> m_poses;
};

} // namespace

const PetArt &thePet() {
  static const MorvoPet pet;
  return pet;
}

} // namespace morvo
