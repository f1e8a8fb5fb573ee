#include "AnimeFigure.h"
#include "AnimeMoves.h"
#include "PetArt.h"

namespace morvo {
namespace {

class AnimePet final : public PetArt {
public:
  [[nodiscard]] std::span<const FrameSet> frameSets() const override {
    return AnimeMoves::frameSets();
  }
  [[nodiscard]] QImage picture(const FrameSet &set, int frame) const override {
    return AnimeFigure::picture(AnimeMoves::poses(set).at(static_cast<std::size_t>(frame)));
  }
};

} // namespace

const PetArt &thePet() {
  static const AnimePet pet;
  return pet;
}

} // namespace morvo
