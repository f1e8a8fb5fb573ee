#pragma once

#include "base/Clock.h"
#include "base/Scheduler.h"
#include "pet/BubbleFade.h"
#include "pet/DragTrack.h"
#include "pet/PetScene.h"
#include "pet/PetTouch.h"
#include "pet/ScenePainter.h"
#include "platform/WindowSystem.h"

#include <QBackingStore>
#include <QWindow>

#include <functional>

namespace morvo {

/// The pet's window: a transparent overlay with the sprite at its bottom and the speech bubble
/// above. It takes no focus, and clicks on its empty pixels go to the window below. Main thread.
///
/// It draws only when the picture has changed, driven by one timer at the rate of the scene; while
/// nothing of it is on the screen it neither draws nor lets the scene's time pass. It keeps its
/// size in points where it comes onto a monitor of another density, or that of its monitor changes.
class DesktopPetWindow final : public QWindow {
public:
  /// What the window stands on; all of it outlives the window or its `retire`.
  struct Ground {
    PetScene &scene;
    WindowSystem &windows;
    Clock &clock;
    Scheduler &scheduler;
  };

  /// `touch` is told of what hands do, until the window retires.
  DesktopPetWindow(const Ground &ground, PetTouch &touch);
  DesktopPetWindow(const DesktopPetWindow &) = delete;
  DesktopPetWindow &operator=(const DesktopPetWindow &) = delete;
  ~DesktopPetWindow() override;

  /// Creates the native window and shows it there.
  void showAt(const QRect &place, int spriteSide);
  /// Moves and sizes the window together with its sprite; a drag goes on from there.
  void resizeTo(const QRect &place, int spriteSide);
  void moveTo(QPoint corner);
  /// Where the window was put last, and how large. `geometry` may tell of an earlier place: the
  /// server reports each step of a motion only after the next ones were made.
  [[nodiscard]] const QRect &place() const { return m_place; }
  /// Takes the window off the screen for good; it touches nothing of its ground afterwards.
  void retire();
  /// The scene was told something: looks whether to draw, at once or with the next picture where
  /// orders come faster than pictures, and when to look again.
  void wake();
  /// Calls `handler` once, after the next picture.
  void onNextDrawing(std::function<void()> handler) { m_onNextDrawing = std::move(handler); }
  void setBubble(const QString &text, const BubbleLook &look);

  [[nodiscard]] const QString &bubbleText() const { return m_bubbleText; }
  [[nodiscard]] QRect spriteRect() const;
  [[nodiscard]] QRect bubbleArea() const;
  /// Pictures drawn so far.
  [[nodiscard]] std::uint64_t drawings() const { return m_drawings; }

protected:
  void exposeEvent(QExposeEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;
  void mousePressEvent(QMouseEvent *event) override;
  void mouseMoveEvent(QMouseEvent *event) override;
  void mouseReleaseEvent(QMouseEvent *event) override;
  void wheelEvent(QWheelEvent *event) override;

private:
  /// Has the window system put the window where it belongs.
  void assertPlace();
  void tick();
  void arm();
  void draw(const QRegion &changed);
  void layBubble(bool newWords);
  void updateRegions(bool whole);
  void compositingChanged();
  void endDrag();
  /// Ends a drag whose end was not seen.
  void loseDrag();
  [[nodiscard]] const QImage *canvas();

  Ground m_ground;
  PetTouch *m_touch;
  QBackingStore m_store;
  ScenePainter m_painter;
  BubbleFade m_bubble;
  QString m_bubbleText;
  BubbleLook m_bubbleLook;
  QRect m_place;
  int m_spriteSide = 0;
  /// Pixels to the point of the picture in the store, and when the window was put in its place.
  double m_ratio = 0;
  double m_placedRatio = 0;
  Scheduler::Timer m_timer;
  Instant m_nextTick;
  std::uint64_t m_drawnRevision = 0;
  std::uint64_t m_drawings = 0;
  Instant m_drawnAt;
  std::function<void()> m_onNextDrawing;
  Instant m_regionsAt;
  QRegion m_inputRegion;
  std::optional<QRegion> m_shape;
  /// While the left button is down.
  std::optional<DragTrack> m_drag;
  bool m_retired = false;
};

} // namespace morvo
