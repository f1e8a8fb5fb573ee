#pragma once

#include "pet/stage/Action.h"
#include "pet/stage/Label.h"

#include <optional>
#include <span>

namespace morvo {

struct RunningAction;

/// One piece of a scene: a place in space that carries others, and perhaps shows a frame or a
/// label. Main thread.
///
/// Points, x to the right and y up, in the parent's space; angles in radians, anticlockwise. A
/// parent shares ownership of its children; whoever made a node may keep it. Every property that a
/// picture depends on is set through a setter, so that `revision` tells of each change.
class Node {
public:
  Node();
  Node(const Node &) = delete;
  Node &operator=(const Node &) = delete;
  ~Node();

  [[nodiscard]] QPointF position() const { return m_position; }
  [[nodiscard]] double rotation() const { return m_rotation; }
  /// What running actions by an angle have added to `rotation` so far.
  [[nodiscard]] double turning() const;
  [[nodiscard]] double xScale() const { return m_xScale; }
  [[nodiscard]] double yScale() const { return m_yScale; }
  /// From 0 to 1; a parent's alpha acts on its children.
  [[nodiscard]] double alpha() const { return m_alpha; }
  /// Added to the parent's; higher is nearer. Equals are drawn parent first, then in the order in
  /// which they were added.
  [[nodiscard]] double zPosition() const { return m_zPosition; }
  /// The frame shown, stretched over `size`.
  [[nodiscard]] const std::optional<SpriteFrame> &texture() const { return m_texture; }
  [[nodiscard]] QSizeF size() const { return m_size; }
  /// The point of the frame that stands on `position`, in fractions of `size` from the bottom left.
  [[nodiscard]] QPointF anchor() const { return m_anchor; }
  [[nodiscard]] const std::optional<Label> &label() const { return m_label; }

  void setPosition(QPointF position) { set(m_position, position); }
  void setRotation(double angle) { set(m_rotation, angle); }
  void setXScale(double scale) { set(m_xScale, scale); }
  void setYScale(double scale) { set(m_yScale, scale); }
  void setAlpha(double alpha) { set(m_alpha, alpha); }
  void setZPosition(double z) { set(m_zPosition, z); }
  void setTexture(const std::optional<SpriteFrame> &frame) { set(m_texture, frame); }
  void setSize(QSizeF size) { set(m_size, size); }
  void setAnchor(QPointF anchor) { set(m_anchor, anchor); }
  void setLabel(const std::optional<Label> &label) { set(m_label, label); }

  /// `child` must have no parent.
  void addChild(std::shared_ptr<Node> child);
  /// Its actions stay on it and rest until it is added again. Nothing without a parent.
  void removeFromParent();
  [[nodiscard]] std::span<const std::shared_ptr<Node>> children() const { return m_children; }
  [[nodiscard]] const Node *parent() const { return m_parent; }

  /// Starts `action` beside what runs already. Its time counts from the stage's present instant,
  /// and the stage takes it up at its next `advance`, even one that lets no time pass. An action
  /// under the same key ends where it is. An empty key is no key.
  void run(const Action &action, const QString &key = {});
  /// The running action under this key. Still there while a block of its last part runs.
  [[nodiscard]] std::optional<Action> actionForKey(const QString &key) const;
  /// Ends the action where it is; blocks it still held are never called.
  void removeAction(const QString &key);

  /// Grows with every visible change of this node and those below it.
  [[nodiscard]] std::uint64_t revision() const { return m_revision; }

private:
  friend class Stage;

  template <typename T> [[nodiscard]] static bool same(const T &a, const T &b) { return a == b; }
  // Qt compares points and sizes with a tolerance, which would swallow the end of a slow move.
  [[nodiscard]] static bool same(QPointF a, QPointF b) { return a.x() == b.x() && a.y() == b.y(); }
  [[nodiscard]] static bool same(QSizeF a, QSizeF b) {
    return a.width() == b.width() && a.height() == b.height();
  }
  template <typename T> void set(T &member, const T &value) {
    if (!same(member, value)) {
      member = value;
      touch();
    }
  }
  void touch();

  QPointF m_position;
  double m_rotation = 0;
  double m_xScale = 1;
  double m_yScale = 1;
  double m_alpha = 1;
  double m_zPosition = 0;
  std::optional<SpriteFrame> m_texture;
  QSizeF m_size;
  QPointF m_anchor{0.5, 0.5};
  std::optional<Label> m_label;
  std::vector<std::shared_ptr<Node>> m_children;
  Node *m_parent = nullptr;
  /// In the order in which they were started.
  std::vector<std::shared_ptr<RunningAction>> m_running;
  std::uint64_t m_revision = 0;
};

} // namespace morvo
