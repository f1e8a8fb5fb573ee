#pragma once

#include "pet/PetScene.h"

#include <QPainter>

#include <list>

namespace morvo {

/// Paints a scene's nodes; the only code that decodes frames. One painter serves one view. Main
/// thread.
///
/// A frame is decoded when it is first shown, at most one a call of `paint` for each sprite, scaled
/// once to the size shown, trimmed of its transparent margin and kept within a byte budget. When
/// the budget is short the frame sets shown longest ago go first; of the set in play as many frames
/// are kept as fit, so that a long loop decodes only the rest anew. A file that cannot be decoded
/// after all draws nothing.
class ScenePainter {
public:
  static constexpr qsizetype standardBudget = qsizetype{24} * 1024 * 1024;

  explicit ScenePainter(qsizetype byteBudget = standardBudget);
  ~ScenePainter();
  ScenePainter(const ScenePainter &) = delete;
  ScenePainter &operator=(const ScenePainter &) = delete;

  /// Draws the scene into `target`, in the painter's coordinates, fitted with its proportions kept
  /// and centred. `devicePixelRatio` is that of the painter's device. The painter comes back as it
  /// was; what stood there before is painted over, not erased.
  void paint(QPainter &painter, const PetScene &scene, const QRectF &target,
             double devicePixelRatio);

  /// Bytes of pixels kept now.
  [[nodiscard]] qsizetype bytesKept() const { return m_bytesKept; }
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
  void drawSprite(QPainter &painter, const Item &item, double devicePixelRatio);
  static void drawLabel(QPainter &painter, const Item &item);
  [[nodiscard]] Prepared prepared(const SpriteFrame &frame, QSize pixels);
  [[nodiscard]] Prepared prepare(const SpriteFrame &frame, QSize pixels);
  void makeRoom(qsizetype bytes);

  qsizetype m_budget;
  qsizetype m_bytesKept = 0;
  std::uint64_t m_framesDecoded = 0;
  /// The set in play first.
  std::list<FrameSet> m_sets;
};

} // namespace morvo
