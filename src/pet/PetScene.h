#pragma once

#include "base/Clock.h"
#include "base/RandomSource.h"
#include "pet/MorvoSprites.h"
#include "pet/PetMenuAction.h"
#include "pet/PetPack.h"
#include "pet/stage/Stage.h"

#include <QSet>

namespace morvo {

/// The little stage on which the pet lives: plays frame loops and one-shots on the sprite, and
/// keeps the body breathing, bobbing and swaying beneath, so that even a single picture looks
/// alive. Knows no window. Main thread.
///
/// Points, y up. From the outside in: the scene, `lifeNode` (place, tilt, facing), `breathNode`
/// (breathing, squashes), `pet` (the sprite, standing on its feet).
class PetScene {
public:
  /// `sprites`, `clock` and `random` must outlive the scene; `sprites` is shared by all scenes.
  PetScene(QSizeF size, PetFiles files, MorvoSprites &sprites, Clock &clock, RandomSource &random);
  PetScene(const PetScene &) = delete;
  PetScene &operator=(const PetScene &) = delete;
  ~PetScene();

  /// Puts the pet on the stage; to be called when the scene is first shown. Later calls do nothing.
  void present();

  /// Lets time pass until `to`.
  void advance(Instant to);
  /// Grows whenever something visible has changed: draw when it differs from what was drawn.
  [[nodiscard]] std::uint64_t revision() const;
  /// How long to wait before the next `advance`: the frame time while frames play, 1/24 second
  /// while only the body moves, else until the next thing is due; nothing while nothing runs. Ask
  /// again after every `advance` and every other call.
  [[nodiscard]] std::optional<Duration> frameInterval() const;

  /// Plays an action of the pack, or a frame set. False, and a line on standard error, when it has
  /// fewer than two frames; the pet then goes on undisturbed.
  bool react(const QString &kind);
  void setMood(const QString &mood);
  /// Sets the persona of the shared sprites too, and has all its files looked at again.
  void setPersona(const QString &personaId);
  /// What the pet can be asked for: the pack's actions and the frame sets it does not name, sorted
  /// by label.
  [[nodiscard]] std::vector<PetMenuAction> catalogActions();
  /// Whether the frame set "idle" has more than one frame.
  [[nodiscard]] bool hasFrames();
  /// The frame sets with more than one frame.
  [[nodiscard]] QSet<QString> availableFrameSetsNow();
  void emitHearts();
  /// Opacity of the sprite, taken from 0.15 to 1.
  void setOpacity(double opacity);

  [[nodiscard]] QSizeF size() const { return m_size; }
  /// A size of its own for each view; the pet is fitted anew and put at rest.
  void setSize(QSizeF size);
  [[nodiscard]] const QString &mood() const { return m_mood; }
  [[nodiscard]] const std::optional<QString> &stickyLoopState() const { return m_stickyLoopState; }
  /// Whether a one-shot is playing.
  [[nodiscard]] bool isPerforming() const;
  /// When the last performance began; nothing before the first.
  [[nodiscard]] std::optional<Instant> lastPerformanceAt() const { return m_lastPerformanceAt; }
  /// Where `lifeNode` rests.
  [[nodiscard]] QPointF lifeBasePosition() const { return m_lifeBasePosition; }

  /// For painters and tests.
  [[nodiscard]] const Node &root() const { return *m_stage.root(); }
  [[nodiscard]] const Node &lifeNode() const { return *m_lifeNode; }
  [[nodiscard]] const Node &breathNode() const { return *m_breathNode; }
  /// Null before `present`.
  [[nodiscard]] const Node *pet() const { return m_pet.get(); }

  /// The keys of the actions on the nodes.
  struct Keys {
    static const QString loop;        ///< On `pet`: the repeating frame animation.
    static const QString oneshot;     ///< On `pet`: frames played once, then back to the loop.
    static const QString lifeBreath;  ///< On `breathNode`.
    static const QString lifeBob;     ///< On `lifeNode`.
    static const QString lifeSway;    ///< On `lifeNode`.
    static const QString lifeUpright; ///< On `lifeNode`: the way back from a sway.
    static const QString moodSquash;  ///< On `pet`.
  };

private:
  [[nodiscard]] std::optional<PetPack> currentPack() const;
  [[nodiscard]] QString loopState();
  /// Brings the stage to the present, and takes up what was started since.
  void catchUp();
  /// Of the resting loop; nothing when it has none.
  [[nodiscard]] std::optional<SpriteFrame> firstFrame();
  /// That frame, or a drawing.
  [[nodiscard]] SpriteFrame firstPicture();
  [[nodiscard]] static bool isLoop(const std::optional<PetPack> &pack, const QString &kind,
                                   const QString &state);
  void stopFrames();
  void playLoop();
  void applyNodeSize();
  void startLife();
  void startBreath(const PetPack::MotionProfile &motion, double period);
  void startBob(const PetPack::MotionProfile &motion, double period);
  void startSway(const PetPack::MotionProfile &motion, double period);
  [[nodiscard]] bool isTired() const;
  void emitHeart(int index);

  QSizeF m_size;
  PetFiles m_files;
  MorvoSprites *m_sprites;
  Clock *m_clock;
  RandomSource *m_random;
  Stage m_stage;
  std::shared_ptr<Node> m_lifeNode = std::make_shared<Node>();
  std::shared_ptr<Node> m_breathNode = std::make_shared<Node>();
  std::shared_ptr<Node> m_pet;
  QPointF m_lifeBasePosition;
  QString m_mood;
  std::optional<QString> m_stickyLoopState;
  std::optional<Instant> m_lastPerformanceAt;
  double m_opacity = 1;
};

} // namespace morvo
