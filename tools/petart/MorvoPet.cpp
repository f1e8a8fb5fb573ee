#include "MorvoChoreography.h"
#include "MorvoFigure.h"
#include "PetArt.h"

#include <algorithm>
#include <vector>

namespace morvo {
namespace {

class MorvoPet : public PetArt {
public:
  MorvoPet() {
    for (const auto &set : MorvoChoreography::frameSets()) {
      m_sets.push_back({set.name, set.frames, set.loop});
    }
  }

  [[nodiscard]] std::span<const FrameSet> frameSets() const override { return m_sets; }
  [[nodiscard]] QImage picture(const FrameSet &set, int frame) const override {
    const auto sets = MorvoChoreography::frameSets();
    const auto found = std::ranges::find(sets, set.name, &MorvoChoreography::FrameSet::name);
    return MorvoFigure::picture(MorvoChoreography::poseAt(*found, frame));
  }

private:
  std::vector<FrameSet> m_sets;
};

} // namespace

const PetArt &thePet() {
  static const MorvoPet pet;
  return pet;
}

} // namespace morvo
