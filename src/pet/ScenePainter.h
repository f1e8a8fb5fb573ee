#pragma once

#include "pet/PetScene.h"

#include <QPainter>

#include <list>
#include <unordered_map>

namespace morvo {

/// Paints a scene's nodes; the only code that decodes frames. One painter serves one view. Main
/// thread.
///
/// A frame is decoded when it is first shown, at most one a call of `paint` for each sprite, scaled
/// once to the size shown, trimmed of its transparent margin and kept within a budget: as it is
/// drawn while there is room, packed after that, so that a long loop of large frames is decoded
/// once too. When the budget is short the frame sets shown longest ago go first; of the set in play
/// as many frames are kept as fit. A frame that was rewritten, or is now shown at another size,
/// takes all its set's old frames with it. For a frame that cannot be decoded after all, its node's
/// last good picture stays; there is none before the first.
class ScenePainter {
public:
  /// The most memory for frames, in bytes, beside the one picture that each node shows.
  struct Budget {
    qsizetype pictures = 0; ///< For frames kept as they are drawn.
    qsizetype packed = 0;   ///< For those kept packed.
  };
  static constexpr Budget standardBudget{.pictures = qsizetype{30} * 1024 * 1024,
                                         .packed = qsizetype{8} * 1024 * 1024};

  explicit ScenePainter(Budget budget = standardBudget);
  ~ScenePainter();
  ScenePainter(const ScenePainter &) = delete;
  ScenePainter &operator=(const ScenePainter &) = delete;

  /// Draws the scene into `target`, in the painter's coordinates, fitted with its proportions kept
  /// and centred. `devicePixelRatio` is that of the painter's device. The painter comes back as it
  /// was; what stood there before is painted over, not erased.
  void paint(QPainter &painter, const PetScene &scene, const QRectF &target,
             double devicePixelRatio);

  /// The alpha of the strongest pixel among the frames drawn by the last `paint`, 0 to 255, faded
  /// as they were; 0 when it drew none.
  [[nodiscard]] double strongestAlpha() const { return m_strongestAlpha; }
  /// Bytes of pixels kept now as they are drawn.
  [[nodiscard]] qsizetype bytesKept() const { return m_kept.pictures; }
  /// Bytes of packed frames kept now.
  [[nodiscard]] qsizetype bytesPacked() const { return m_kept.packed; }
  /// Frames decoded since the painter was made.
  [[nodiscard]] std::uint64_t framesDecoded() const { return m_framesDecoded; }
  /// Gives all memory back, as for a hidden pet.
  void forgetFrames();

private:
  struct Prepared;
  struct FrameSet;
  struct Item;

  void collect(const Node &node, const QTransform &parent, double alpha, double z,
               std::vector<Item> &items) const;
  /// What is to be drawn of the item's frame; null when nothing is. Lives until the next call.
  [[nodiscard]] const Prepared *pictureOf(const Item &item, double pixelsPerPoint);
  static void drawSprite(QPainter &painter, const Item &item, const Prepared &picture);
  /// Brings the painter to the item's place.
  static void enter(QPainter &painter, const Item &item);
  static void drawLabel(QPainter &painter, const Item &item);
  [[nodiscard]] Prepared prepared(const SpriteFrame &frame, QSize pixels);
  [[nodiscard]] Prepared prepare(const SpriteFrame &frame, QSize pixels);
  void keep(FrameSet &set, const Prepared &ready);
  /// Gives up the sets shown longest ago, never the one in play, until `wanted` fits.
  void makeRoom(Budget wanted);
  [[nodiscard]] bool fits(Budget wanted) const;
  void forget(FrameSet &set);

  Budget m_budget;
  Budget m_kept;
  std::uint64_t m_framesDecoded = 0;
  double m_strongestAlpha = 0;
  /// The set in play first.
  std::list<FrameSet> m_sets;
  /// What each node showed at the last painting. A node is known by its address alone, which is
  /// never followed.
  std::unordered_map<const Node *, Prepared> m_shown;
};

} // namespace morvo
