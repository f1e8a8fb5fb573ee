#pragma once

#include "FrameSet.h"

#include <QImage>

#include <span>

namespace morvo {

/// Side of the square canvas of every frame, in pixels.
inline constexpr int canvasSide = 512;
/// Where a pet's lowest part rests, from the top, in pixels; the same in every set of every pet.
inline constexpr double baseLine = 490;

/// A pet that can be drawn. The same set and frame always give the same bytes.
class PetArt {
public:
  PetArt() = default;
  PetArt(const PetArt &) = delete;
  PetArt &operator=(const PetArt &) = delete;
  virtual ~PetArt() = default;

  /// The set "idle" comes first, and its frame 0 is the rest pose.
  [[nodiscard]] virtual std::span<const FrameSet> frameSets() const = 0;
  /// A premultiplied picture of `canvasSide` on a transparent ground.
  [[nodiscard]] virtual QImage picture(const FrameSet &set, int frame) const = 0;
};

/// The pet of this program; each pet defines it once, in the file of its name (`MorvoPet.cpp`).
[[nodiscard]] const PetArt &thePet();

} // namespace morvo
